#include "bench/gevsender.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace Bench {

namespace {

constexpr uint32_t kFirstOfMany = 0x0A4D000B;  // as scripts/bench-network makes them

std::string MakeFolder() {
    std::string name = std::filesystem::temp_directory_path() / "zelcam-bench-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return name;
}

uint64_t NumberAfter(const std::string& text, const std::string& name) {
    const size_t place = text.find(name);
    if (place == std::string::npos) throw std::runtime_error("zelsim does not say " + name);
    return std::strtoull(text.c_str() + place + name.size(), nullptr, 10);
}

}  // namespace

GevSender::GevSender(const BenchNetwork& network, const GevCameras& cameras)
    : cameras_(cameras), folder_(MakeFolder()) {
    WriteConfiguration();
    std::vector<std::string> command = {ProgramBeside("zelsim"), "--config", folder_ + "/cameras",
                                        "--control", folder_ + "/control"};
    for (size_t i = 0; i < cameras.count; ++i) {
        addresses_.push_back(cameras.count == 1 ? network.camera.address
                                                : kFirstOfMany + static_cast<uint32_t>(i));
        command.insert(command.end(),
                       {"--on", inet_ntoa(NativeAddress({addresses_.back(), 0}).sin_addr)});
    }
    RunAt(network.camera, kSenderProcessor, [&] { process_.emplace(std::move(command)); });
    while (process_->Output().find("commands are taken") == std::string::npos) {
        if (process_->Await(std::chrono::milliseconds(10)))
            throw std::runtime_error("zelsim ended: " + process_->Output());
    }
}

GevSender::~GevSender() {
    process_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void GevSender::WriteConfiguration() const {
    std::ofstream file(folder_ + "/cameras");
    file << "<ZelSim><Interface id='GEV' type='GEV'>";
    for (size_t i = 0; i < cameras_.count; ++i) {
        file << "<Camera id='CAM" << i << "' serial='" << i << "' width='" << cameras_.width
             << "' height='" << cameras_.height << "' frameRate='" << cameras_.rate
             << "' linkSpeed='" << cameras_.linkSpeed << "'><Network OwnPacketSize='"
             << cameras_.packetSize << "' " << cameras_.switches << "/></Camera>";
    }
    file << "</Interface></ZelSim>";
    if (!file.flush()) throw std::runtime_error("the configuration cannot be written");
}

GevSent GevSender::Sent() const {
    GevSent sent;
    for (size_t i = 0; i < cameras_.count; ++i) {
        const std::string answer = Tell("stats CAM" + std::to_string(i));
        sent.frames += NumberAfter(answer, "\nblocks=");
        sent.packets += NumberAfter(answer, "\npackets=");
    }
    return sent;
}

// The answer ends with a line "ok", or with the reason for another one.
std::string GevSender::Tell(const std::string& command) const {
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder_ + "/control";
    std::memcpy(address.sun_path, path.c_str(), std::min(path.size(), sizeof address.sun_path - 1));
    std::string answer;
    const std::string line = command + '\n';
    if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        write(connection, line.data(), line.size()) == static_cast<ssize_t>(line.size())) {
        std::array<char, 1024> bytes{};
        ssize_t size = 0;
        while (answer.find("\nok") == std::string::npos &&
               (size = read(connection, bytes.data(), bytes.size())) > 0)
            answer.append(bytes.data(), static_cast<size_t>(size));
    }
    close(connection);
    return answer;
}

}  // namespace Bench
