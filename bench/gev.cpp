// How pictures of cameras on a network are received: what gets lost, what it costs, how fast it can
// be. Beside it, in turn and with the same frames, arv-camera-test of Debian's aravis-tools and
// the bare system call of the kernel. The cameras are those of zelsim, in another network
// namespace and on a processor of their own.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <thread>
#include <unistd.h>

#include "bench/gevcapture.h"
#include "bench/gevpictures.h"
#include "bench/groups.h"
#include "bench/measure.h"

namespace Bench {

namespace {

constexpr const char* kGev = "gev";
constexpr const char* kAravisName = "aravis";
constexpr const char* kFloorName = "bare recv";
constexpr int kGevRounds = 3;
constexpr uint64_t kGigabit = 125000000;  // bytes a second
constexpr double kPercent = 100;
constexpr double kMegabyte = 1e6;
constexpr double kNsPerMs = 1e6;
constexpr double kNsPerUs = 1e3;

std::string PacketsOf(uint32_t size) {
    return "packets of " + std::to_string(size);
}

const char* NameOf(GevProgram program) {
    switch (program) {
        case GevProgram::Aravis:
            return kAravisName;
        case GevProgram::Floor:
            return kFloorName;
        case GevProgram::Library:
            break;
    }
    return "ours";
}

std::vector<GevProgram> Rivals() {
    if (IsAravisInstalled()) return {GevProgram::Library, GevProgram::Aravis};
    return {GevProgram::Library};
}

BenchNetwork NetworkOfTwo() {
    BenchNetwork network;
    if (network.IsLoopback())
        throw std::runtime_error("this needs network namespaces, and so root");
    return network;
}

// ---- Frames that are not complete
// ----------------------------------------------------------------------------

// The largest socket buffer of an ordinary user. Debian's net.core.rmem_max is 212,992 bytes, of
// which Linux makes twice as many, because it counts its own memory as well.
constexpr unsigned kDebianBuffer = 2 * 212992;

// The share of frames that are not complete; for a user without rights.
void MeasureLoss(Report& report, const BenchNetwork& network, const std::string& name,
                 const GevCameras& cameras, const GevReception& reception,
                 std::optional<double> limit) {
    const GevSender sender(network, cameras);
    const GevPictures pictures = Receive(network, sender, reception);
    // What the program counted tells why.
    if (limit && pictures.lost > *limit)
        for (const std::string& output : pictures.outputs)
            std::cerr << name << ":\n" << output;
    report.Add({kGev,
                "frames not complete, " + name + ", " +
                    std::to_string(std::lround(reception.seconds)) + " s, " +
                    NameOf(reception.program),
                "%",
                {pictures.lost * kPercent},
                "",
                {},
                limit});
}

void MeasureOrdinaryUser(Report& report, const BenchNetwork& network, bool isLong) {
    GevCameras cameras;
    std::string name;
    GevReception reception;
    const auto measure = [&] {
        name = "4 MP at " + std::to_string(std::lround(cameras.rate)) + "/s, " +
               PacketsOf(cameras.packetSize);
        for (const GevProgram program : Rivals()) {
            const bool isOurs = program == GevProgram::Library;
            reception.program = program;
            reception.seconds = isOurs && isLong ? 600 : 30;
            reception.socketBuffer = kDebianBuffer;
            MeasureLoss(report, network, name, cameras, reception,
                        isOurs ? std::optional(0.0) : std::nullopt);
        }
    };
    measure();
    cameras.packetSize = 9000;
    measure();
    cameras.rate = 100;
    cameras.linkSpeed = 5 * kGigabit;
    // 160 ms of pictures. The four frames of cameras with little memory are 40 ms here, and are
    // over before the rest of this link has brought back what a stall of 20 ms cost.
    cameras.switches = "ResendMemoryBlocks='16'";
    measure();
    reception.program = GevProgram::Library;
    reception.seconds = 30;
    reception.socketBuffer = kDebianBuffer / 2;  // as programs have it that do not ask for more
    MeasureLoss(report, network, name + ", half the buffer", cameras, reception, std::nullopt);
}

void MeasureFaults(Report& report, const BenchNetwork& network) {
    struct Fault {
        const char* name;
        const char* switches;
    };
    constexpr Fault kFaults[] = {{"1 % lost", "LossRate='0.01'"},
                                 {"bursts of 50 lost", "LossEvery='5000' LossBurst='50'"},
                                 {"late by 16 packets", "Reorder='16'"},
                                 {"one in 20 twice", "DuplicateEvery='20'"}};
    for (const Fault& fault : kFaults) {
        for (const uint32_t packetSize : {1500U, 9000U}) {
            GevCameras cameras;
            cameras.packetSize = packetSize;
            cameras.rate = 20;  // room on the link for what is sent again
            cameras.switches = fault.switches;
            for (const GevProgram program : Rivals()) {
                const bool isOurs = program == GevProgram::Library;
                GevReception reception;
                reception.program = program;
                reception.seconds = 5;
                reception.socketBuffer = kDebianBuffer;
                MeasureLoss(report, network, std::string(fault.name) + ", " + PacketsOf(packetSize),
                            cameras, reception, isOurs ? std::optional(0.0) : std::nullopt);
            }
        }
    }
}

// ---- What it costs
// -------------------------------------------------------------------------------------------

struct Costs {
    std::vector<double> program;
    std::vector<double> interrupts;
};

void AddCosts(Report& report, const std::string& name, const std::map<GevProgram, Costs>& costs,
              GevProgram base, std::optional<double> limit) {
    const Costs& ours = costs.at(GevProgram::Library);
    const auto found = costs.find(base);
    if (found == costs.end()) return;
    report.Add({kGev, "CPU time, " + name, "s/GB", ours.program, NameOf(base),
                found->second.program, limit});
    report.Add({kGev, "soft interrupts of the machine, " + name, "s/GB", ours.interrupts,
                NameOf(base), found->second.interrupts});
}

std::map<GevProgram, Costs> CostsOf(const BenchNetwork& network, const GevCameras& cameras,
                                    bool withRights) {
    std::vector<GevProgram> programs = Rivals();
    if (!withRights) programs.push_back(GevProgram::Floor);
    std::map<GevProgram, Costs> costs;
    for (int round = 0; round < kGevRounds; ++round) {
        for (const GevProgram program : programs) {
            const GevSender sender(network, cameras);
            GevReception reception;
            reception.program = program;
            reception.withRights = withRights;
            if (withRights) reception.method = "Ring";  // as aravis receives then
            // Until every buffer was used: aravis has fifty, and to touch their memory for the
            // first time costs more than to receive.
            reception.warmUp = 2.5;
            reception.seconds = 8;
            const GevPictures pictures = Receive(network, sender, reception);
            costs[program].program.push_back(pictures.cpuPerGigabyte);
            costs[program].interrupts.push_back(pictures.interruptsPerGigabyte);
        }
    }
    return costs;
}

// A full link of 1 Gbit/s, where nothing needs to be lost. Packets come joined when the sender has
// the kernel cut them.
void MeasureCosts(Report& report, const BenchNetwork& network) {
    constexpr double kOfAravisJoined = 0.5;
    constexpr double kOfFloor = 1.1;
    for (const uint32_t packetSize : {1500U, 9000U}) {
        for (const bool joined : {false, true}) {
            GevCameras cameras;
            cameras.packetSize = packetSize;
            if (joined) cameras.switches = "Segmentation='true'";
            const std::string name = PacketsOf(packetSize) + (joined ? " joined" : "");
            auto costs = CostsOf(network, cameras, false);
            AddCosts(report, name, costs, GevProgram::Aravis, joined ? kOfAravisJoined : 1.0);
            AddCosts(report, name, costs, GevProgram::Floor,
                     joined ? std::nullopt : std::optional(kOfFloor));
            if (joined) continue;  // the packets on their way are larger than any that aravis knows
            costs = CostsOf(network, cameras, true);
            AddCosts(report, name + ", packet rings", costs, GevProgram::Aravis, 1.0);
        }
    }
}

// ---- How fast it can be
// --------------------------------------------------------------------------------------

// Whether all that the cameras were to send was sent and received.
bool KeepsUp(const BenchNetwork& network, const GevCameras& cameras, GevProgram program) {
    constexpr double kAsWanted = 0.97;
    const GevSender sender(network, cameras);
    GevReception reception;
    reception.program = program;
    const GevPictures pictures = Receive(network, sender, reception);
    return pictures.lost == 0 && pictures.rate > kAsWanted * cameras.rate;
}

// The highest rate of 4 MP in steps of 10 %, in frames a second.
double HighestRate(const BenchNetwork& network, GevCameras cameras, GevProgram program) {
    constexpr double kStep = 1.1;
    constexpr double kLowest = 20;
    int good = 0;
    int bad = 36;  // 620 frames a second
    while (bad - good > 1) {
        const int middle = (good + bad) / 2;
        cameras.rate = kLowest * std::pow(kStep, middle);
        cameras.linkSpeed = static_cast<uint64_t>(cameras.FrameBytes() * cameras.rate * 1.2);
        (KeepsUp(network, cameras, program) ? good : bad) = middle;
    }
    return kLowest * std::pow(kStep, good);
}

void MeasureHighestRate(Report& report, const BenchNetwork& network) {
    for (const uint32_t packetSize : {1500U, 9000U}) {
        for (const bool joined : {false, true}) {
            GevCameras cameras;
            cameras.packetSize = packetSize;
            if (joined) cameras.switches = "Segmentation='true'";
            std::vector<GevProgram> programs = Rivals();
            programs.push_back(GevProgram::Floor);
            std::map<GevProgram, std::vector<double>> rates;
            for (const GevProgram program : programs) {
                rates[program] = {HighestRate(network, cameras, program) * cameras.FrameBytes() /
                                  kMegabyte};
            }
            for (size_t i = 1; i < programs.size(); ++i) {
                report.Add({kGev,
                            "highest rate without loss, " + PacketsOf(packetSize) +
                                (joined ? " joined" : ""),
                            "MB/s", rates[GevProgram::Library], NameOf(programs[i]),
                            rates[programs[i]]});
            }
        }
    }
}

// ---- Many cameras
// --------------------------------------------------------------------------------------------

void MeasureEightCameras(Report& report, const BenchNetwork& network) {
    for (const double rate : {25.0, 50.0}) {
        for (const GevProgram program : Rivals()) {
            GevCameras cameras;
            cameras.width = cameras.height = 1024;
            cameras.rate = rate;
            cameras.packetSize = 9000;
            cameras.count = 8;
            const GevSender sender(network, cameras);
            GevReception reception;
            reception.program = program;
            reception.seconds = 5;
            const GevPictures pictures = Receive(network, sender, reception);
            const std::string name = ", 8 cameras of 1 MP at " + std::to_string(std::lround(rate)) +
                                     "/s, " + NameOf(program);
            const auto [fewest, most] =
                std::minmax_element(pictures.complete.begin(), pictures.complete.end());
            Figure lost{kGev, "frames not complete" + name, "%", {pictures.lost * kPercent}};
            if (program == GevProgram::Library) lost.limit = 0;
            report.Add(lost);
            report.Add({kGev,
                        "sent in all" + name,
                        "MB/s",
                        {pictures.rate * cameras.FrameBytes() * 8 / kMegabyte}});
            report.Add({kGev,
                        "frames of the worst camera to the best" + name,
                        "%",
                        {*fewest / std::max(*most, 1.0) * kPercent}});
        }
    }
}

// ---- Times
// ---------------------------------------------------------------------------------------------------

// The times at which a program had frames, less those at which their last packets were sent.
std::vector<double> LatenciesOf(const std::string& arrivals,
                                const std::map<uint64_t, int64_t>& trailers) {
    constexpr uint64_t kSettled = 20;  // frames after which all memory is there
    std::vector<double> latencies;
    std::ifstream file(arrivals);
    uint64_t frame = 0;
    int64_t time = 0;
    while (file >> frame >> time) {
        const auto sent = trailers.find(frame);
        if (sent != trailers.end() && frame > kSettled)
            latencies.push_back(static_cast<double>(time - sent->second) / kNsPerUs);
    }
    if (latencies.empty()) throw std::runtime_error("no frame has a time");
    return latencies;
}

GevCameras SmallCamera(double rate) {
    GevCameras cameras;
    cameras.width = 640;
    cameras.height = 480;
    cameras.rate = rate;
    return cameras;
}

void MeasureLatency(Report& report, const BenchNetwork& network) {
    const std::string file =
        std::filesystem::temp_directory_path() / ("zelcam-arrivals-" + std::to_string(getpid()));
    std::map<GevProgram, std::vector<double>> p50;
    std::map<GevProgram, std::vector<double>> p99;
    for (int round = 0; round < 2 * kGevRounds; ++round) {
        for (const GevProgram program : {GevProgram::Library, GevProgram::Floor}) {
            const GevSender sender(network, SmallCamera(200));
            const GevCapture capture(network);
            GevReception reception;
            reception.program = program;
            reception.arrivals = file;
            Receive(network, sender, reception);
            const std::vector<double> latencies = LatenciesOf(file, capture.Trailers());
            p50[program].push_back(Percentile(latencies, 0.5));
            p99[program].push_back(Percentile(latencies, 0.99));
        }
    }
    std::filesystem::remove(file);
    const std::string name = "last packet sent to GetBuffer, ";
    std::vector<double> beyond;
    for (size_t i = 0; i < p50[GevProgram::Library].size(); ++i)
        beyond.push_back(p50[GevProgram::Library][i] - p50[GevProgram::Floor][i]);
    constexpr double kMostBeyond = 30;
    report.Add(
        {kGev, name + "p50", "us", p50[GevProgram::Library], kFloorName, p50[GevProgram::Floor]});
    report.Add({kGev, name + "p50, beyond " + kFloorName, "us", beyond, "", {}, kMostBeyond});
    report.Add(
        {kGev, name + "p99", "us", p99[GevProgram::Library], kFloorName, p99[GevProgram::Floor]});
}

// From the first message on the network to the last packet of the first frame.
double FirstFrameOnNetwork(const GevCapture& capture) {
    const auto first = capture.FirstMessage();
    const auto trailers = capture.Trailers();
    if (!first || trailers.empty()) throw std::runtime_error("no first frame was seen");
    return static_cast<double>(trailers.begin()->second - *first) / kNsPerMs;
}

void MeasureFirstFrame(Report& report, const BenchNetwork& network) {
    constexpr double kMostMs = 300;
    std::map<GevProgram, std::vector<double>> onNetwork;
    std::vector<double> asSeen;
    for (int round = 0; round < 2 * kGevRounds; ++round) {
        for (const GevProgram program : Rivals()) {
            const GevSender sender(network, SmallCamera(100));
            const GevCapture capture(network);
            GevReception reception;
            reception.program = program;
            const GevPictures pictures = Receive(network, sender, reception);
            onNetwork[program].push_back(FirstFrameOnNetwork(capture));
            if (program != GevProgram::Library) continue;
            asSeen.push_back(NumbersOf(pictures.outputs[0], "first-frame-ns").at(0) / kNsPerMs);
        }
    }
    report.Add({kGev, "looking for cameras to the first frame", "ms", asSeen, "", {}, kMostMs});
    if (!IsAravisInstalled()) return;
    report.Add({kGev, "first message on the network to the first frame", "ms",
                onNetwork[GevProgram::Library], kAravisName, onNetwork[GevProgram::Aravis]});
}

int64_t RealTime() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

// A camera that says nothing any more.
void MeasureControlLoss(Report& report, const BenchNetwork& network) {
    constexpr double kHeartbeatMs = 3000;  // as cameras have it
    std::vector<double> times;
    for (int round = 0; round < kGevRounds; ++round) {
        GevSender sender(network, SmallCamera(100));
        GevReception reception;
        reception.untilLost = true;
        const auto receivers = StartReceivers(network, sender, reception);
        std::this_thread::sleep_for(std::chrono::seconds(2));
        sender.Freeze();
        const int64_t frozen = RealTime();
        receivers[0]->Await(std::chrono::seconds(15));
        const std::vector<double> lost = NumbersOf(receivers[0]->Output(), "lost-at-ns");
        if (lost.empty())
            throw std::runtime_error("no loss was noticed:\n" + receivers[0]->Output());
        times.push_back((lost[0] - static_cast<double>(frozen)) / kNsPerMs);
    }
    report.Add({kGev, "camera frozen to its loss", "ms", times, "", {}, kHeartbeatMs});
}

}  // namespace

void MeasureGevLoss(Report& report, bool isLong) {
    MeasureOrdinaryUser(report, NetworkOfTwo(), isLong);
}

void MeasureGevFaults(Report& report) {
    MeasureFaults(report, NetworkOfTwo());
}

void MeasureGevCost(Report& report) {
    MeasureCosts(report, NetworkOfTwo());
}

void MeasureGevRate(Report& report) {
    MeasureHighestRate(report, NetworkOfTwo());
}

void MeasureGevMany(Report& report) {
    MeasureEightCameras(report, NetworkOfTwo());
}

void MeasureGevTimes(Report& report) {
    const BenchNetwork network = NetworkOfTwo();
    MeasureLatency(report, network);
    MeasureFirstFrame(report, network);
    MeasureControlLoss(report, network);
}

}  // namespace Bench
