// Receives pictures for a time and prints figures as "name=value", to be run by zelcam_bench:
//
//   zelcam_bench_receiver library [--seconds S] [--cameras N] [--socket-buffer BYTES]
//                                 [--method NAME] [--arrivals FILE] [--until-lost]
//   zelcam_bench_receiver floor --camera ADDRESS --host ADDRESS --packet-size BYTES [--seconds S]
//                               [--socket-buffer BYTES] [--arrivals FILE]
//
// It uses the first cameras on ZELGEV_INTERFACES, or the one at an address.
#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <stdexcept>

#include "bench/receiver/receiver.h"

namespace BenchReceiver {

int64_t RealTime() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

void WriteArrivals(const std::string& file, const std::vector<Arrival>& arrivals) {
    if (file.empty()) return;
    std::ofstream out(file);
    for (const Arrival& arrival : arrivals)
        out << arrival.frame << ' ' << arrival.time << '\n';
    if (!out.flush()) throw std::runtime_error(file + " cannot be written");
}

namespace {

uint32_t AddressOf(const char* text) {
    in_addr address{};
    if (inet_pton(AF_INET, text, &address) != 1) throw std::runtime_error("no address");
    return ntohl(address.s_addr);
}

Options OptionsOf(int argc, char** argv) {
    Options options;
    if (argc > 1) options.way = argv[1];
    for (int i = 2; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--until-lost") {
            options.untilLost = true;
            continue;
        }
        if (++i == argc) throw std::runtime_error(name + " needs a value");
        const char* const value = argv[i];
        if (name == "--seconds") {
            options.seconds = std::atof(value);
        } else if (name == "--cameras") {
            options.cameras = static_cast<size_t>(std::atoi(value));
        } else if (name == "--socket-buffer") {
            options.socketBuffer = std::atoi(value);
        } else if (name == "--method") {
            options.method = value;
        } else if (name == "--arrivals") {
            options.arrivals = value;
        } else if (name == "--camera") {
            options.camera = AddressOf(value);
        } else if (name == "--host") {
            options.host = AddressOf(value);
        } else if (name == "--packet-size") {
            options.packetSize = static_cast<uint32_t>(std::atoi(value));
        } else {
            throw std::runtime_error("there is no option " + name);
        }
    }
    return options;
}

}  // namespace

}  // namespace BenchReceiver

int main(int argc, char** argv) {
    try {
        const BenchReceiver::Options options = BenchReceiver::OptionsOf(argc, argv);
        if (options.way == "library") {
            ReceiveByLibrary(options);
        } else if (options.way == "floor") {
            ReceiveBare(options);
        } else {
            throw std::runtime_error("say library or floor");
        }
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "zelcam_bench_receiver: %s\n", e.what());
        return 1;
    }
}
