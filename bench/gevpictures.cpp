#include "bench/gevpictures.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cmath>
#include <fstream>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <unistd.h>

#include "bench/measure.h"

namespace Bench {

namespace {

constexpr const char* kAravis = "/usr/bin/arv-camera-test-0.8";
constexpr std::chrono::seconds kPatience(10);

using Command = std::vector<std::string>;

void Append(Command& command, const Command& more) {
    command.insert(command.end(), more.begin(), more.end());
}

std::string TextOf(uint32_t address) {
    return inet_ntoa(NativeAddress({address, 0}).sin_addr);
}

// aravis takes as little memory as Debian gives unless it is told otherwise.
Command AravisCommand(const GevSender& sender, size_t camera, const GevReception& reception) {
    Command command = {kAravis,
                       "--name",
                       TextOf(sender.Address(camera)),
                       "--duration",
                       std::to_string(std::lround(std::ceil(reception.seconds))),
                       "--gv-packet-size",
                       std::to_string(sender.Cameras().packetSize),
                       "--packet-size-adjustment",
                       "never"};
    if (reception.socketBuffer == 0) command.push_back("--auto");
    return command;
}

Command OwnCommand(const BenchNetwork& network, const GevSender& sender,
                   const GevReception& reception) {
    const bool isFloor = reception.program == GevProgram::Floor;
    Command command = {ProgramBeside("zelcam_bench_receiver"), isFloor ? "floor" : "library",
                       "--seconds", std::to_string(reception.seconds)};
    if (isFloor) {
        Append(command,
               {"--camera", TextOf(sender.Address(0)), "--host", TextOf(network.host.address),
                "--packet-size", std::to_string(sender.Cameras().packetSize)});
    } else {
        Append(command, {"--cameras", std::to_string(sender.Cameras().count)});
        if (!reception.method.empty()) Append(command, {"--method", reception.method});
    }
    unsigned socketBuffer = reception.socketBuffer;
    if (isFloor && socketBuffer == 0) socketBuffer = 32 << 20;
    if (socketBuffer != 0) Append(command, {"--socket-buffer", std::to_string(socketBuffer)});
    if (!reception.arrivals.empty()) Append(command, {"--arrivals", reception.arrivals});
    if (reception.untilLost) command.push_back("--until-lost");
    return command;
}

// The time of soft interrupts of all processors since the start of the machine, in seconds.
double InterruptTime() {
    std::ifstream file("/proc/stat");
    std::string word;
    double value = 0;
    constexpr int kSoftInterrupts = 7;
    file >> word;
    for (int i = 0; i < kSoftInterrupts; ++i)
        file >> value;
    return value / static_cast<double>(sysconf(_SC_CLK_TCK));
}

struct Sample {
    int64_t time = Now();
    double cpu = 0;  // seconds of the receivers
    double interrupts = InterruptTime();
    GevSent sent;
};

using Processes = std::vector<std::unique_ptr<Process>>;

Sample SampleOf(const Processes& processes, const GevSender& sender) {
    constexpr double kNsPerSecond = 1e9;
    Sample sample;
    sample.sent = sender.Sent();
    for (const auto& process : processes)
        sample.cpu += static_cast<double>(process->CpuTime()) / kNsPerSecond;
    return sample;
}

// Until frames come in.
void AwaitFrames(const Processes& processes, const GevSender& sender, const GevSent& before) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    const uint64_t wanted = before.frames + 2 * sender.Cameras().count;
    while (sender.Sent().frames < wanted) {
        const bool isLate = std::chrono::steady_clock::now() > end;
        for (const auto& process : processes) {
            if (isLate || !process->Runs())
                throw std::runtime_error("no frame was received:\n" + process->Output());
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

double Sum(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

double LostShare(double lost, double all) {
    return all > 0 ? std::max(lost, 0.0) / all : 1;
}

void Count(const GevReception& reception, const GevSent& sent, GevPictures& pictures) {
    std::string output;
    for (const std::string& one : pictures.outputs)
        output += one;
    pictures.sent = static_cast<double>(sent.frames);
    if (reception.program == GevProgram::Aravis) {
        // It ends amidst a frame, so what was sent says too much.
        pictures.complete = NumbersOf(output, "n_completed_buffers");
        const double lost = Sum(NumbersOf(output, "n_failures")) +
                            Sum(NumbersOf(output, "n_underruns")) +
                            Sum(NumbersOf(output, "n_missing_frames"));
        pictures.lost = LostShare(lost, lost + Sum(pictures.complete));
        return;
    }
    pictures.complete = NumbersOf(output, "frames");
    if (reception.program == GevProgram::Floor) {
        const auto packets = static_cast<double>(sent.packets);
        pictures.lost = LostShare(packets - Sum(NumbersOf(output, "packets")), packets);
        return;
    }
    const std::vector<double> incomplete = NumbersOf(output, "incomplete");
    for (size_t i = 0; i < pictures.complete.size() && i < incomplete.size(); ++i)
        pictures.complete[i] -= incomplete[i];
    pictures.lost = LostShare(pictures.sent - Sum(pictures.complete), pictures.sent);
}

}  // namespace

double GevPictures::CompleteFrames() const {
    return Sum(complete);
}

bool IsAravisInstalled() {
    return access(kAravis, X_OK) == 0;
}

std::vector<double> NumbersOf(const std::string& output, const std::string& name) {
    std::vector<double> numbers;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, name.size(), name) != 0) continue;
        const size_t place = line.find_first_not_of(' ', name.size());
        if (place == std::string::npos || line[place] != '=') continue;
        numbers.push_back(std::strtod(line.c_str() + place + 1, nullptr));
    }
    return numbers;
}

Processes StartReceivers(const BenchNetwork& network, const GevSender& sender,
                         const GevReception& reception) {
    Command prefix = {"env", "ZELGEV_INTERFACES=eth0", "ZELSIM=0"};
    if (!reception.withRights)
        Append(prefix, {"setpriv", "--bounding-set=-all", "--inh-caps=-all"});
    const bool isAravis = reception.program == GevProgram::Aravis;
    Processes processes;
    for (size_t i = 0; i < (isAravis ? sender.Cameras().count : 1); ++i) {
        Command command = prefix;
        Append(command, isAravis ? AravisCommand(sender, i, reception)
                                 : OwnCommand(network, sender, reception));
        RunAt(network.host, kReceiverProcessor,
              [&] { processes.push_back(std::make_unique<Process>(std::move(command))); });
    }
    return processes;
}

GevPictures Receive(const BenchNetwork& network, const GevSender& sender,
                    const GevReception& reception) {
    const GevSent before = sender.Sent();
    const Processes processes = StartReceivers(network, sender, reception);
    AwaitFrames(processes, sender, before);
    const std::chrono::duration<double> warmUp(reception.warmUp);
    std::this_thread::sleep_for(warmUp);
    const Sample first = SampleOf(processes, sender);
    std::this_thread::sleep_for(
        std::max(std::chrono::duration<double>(reception.seconds) - 2 * warmUp, warmUp / 2));
    const Sample last = SampleOf(processes, sender);

    GevPictures pictures;
    for (const auto& process : processes) {
        if (!process->Await(kPatience))
            throw std::runtime_error("a receiver does not end:\n" + process->Output());
        pictures.outputs.push_back(process->Output());
    }
    const GevSent after = sender.Sent();
    Count(reception, {after.frames - before.frames, after.packets - before.packets}, pictures);
    const auto frames = static_cast<double>(last.sent.frames - first.sent.frames);
    const double gigabytes = frames * sender.Cameras().FrameBytes() * (1 - pictures.lost) / 1e9;
    pictures.rate = frames / static_cast<double>(last.time - first.time) * 1e9 /
                    static_cast<double>(sender.Cameras().count);
    pictures.cpuPerGigabyte = (last.cpu - first.cpu) / gigabytes;
    pictures.interruptsPerGigabyte = (last.interrupts - first.interrupts) / gigabytes;
    return pictures;
}

}  // namespace Bench
