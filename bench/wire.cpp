// What a simulated camera on a network sends: how fast, and at what cost. Beside it, the fake GigE
// camera of Debian's aravis-tools in the same run, if it is installed.
//
// scripts/bench-network makes the network; without it, all of it is loopback. A camera sends as
// fast as it can from one processor, to a receiver on another that only counts.
#include <arpa/inet.h>
#include <atomic>
#include <functional>
#include <memory>
#include <netinet/in.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "bench/child.h"
#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/network.h"
#include "bench/process.h"
#include "producers/simulator/gige/stream/streamchannel.h"
#include "tests/support/processstate.h"

namespace Bench {

namespace {

constexpr int kWireRounds = 3;
constexpr auto kWarmUp = std::chrono::milliseconds(200);
constexpr auto kMeasured = std::chrono::milliseconds(500);

// A UDP socket of the host.
class HostSocket {
  public:
    explicit HostSocket(const NetworkEnd& host) {
        RunAt(host, kReceiverProcessor, [&] { Open(host.address); });
    }
    ~HostSocket() { close(socket_); }
    HostSocket(const HostSocket&) = delete;
    HostSocket& operator=(const HostSocket&) = delete;

    int Descriptor() const { return socket_; }
    uint16_t Port() const { return port_; }

  private:
    void Open(uint32_t at) {
        socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        constexpr int kBuffer = 64 << 20;
        if (setsockopt(socket_, SOL_SOCKET, SO_RCVBUFFORCE, &kBuffer, sizeof kBuffer) != 0)
            setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &kBuffer, sizeof kBuffer);
        const timeval patience{0, 100000};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        sockaddr_in address = NativeAddress({at, 0});
        socklen_t size = sizeof address;
        if (bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("a socket of the host cannot be bound");
        port_ = ntohs(address.sin_port);
    }

    int socket_ = -1;
    uint16_t port_ = 0;
};

// Counts the bytes that arrive, on a thread of its own.
class CountingReceiver {
  public:
    explicit CountingReceiver(const NetworkEnd& host) : socket_(host), thread_([this] { Run(); }) {}
    ~CountingReceiver() {
        isEnding_ = true;
        thread_.join();
    }

    uint16_t Port() const { return socket_.Port(); }
    uint64_t Bytes() const { return bytes_; }
    int64_t CpuTime() const {
        clockid_t clock{};
        pthread_getcpuclockid(const_cast<std::thread&>(thread_).native_handle(), &clock);
        return CpuTimeOf(clock);
    }

  private:
    void Run() {
        constexpr size_t kMessages = 64;
        RunOnProcessor(kReceiverProcessor);
        std::vector<uint8_t> memory(kMessages * ZelSim::kMaxPacketSize);
        std::vector<iovec> pieces(kMessages);
        std::vector<mmsghdr> messages(kMessages);
        for (size_t i = 0; i < kMessages; ++i) {
            pieces[i] = {memory.data() + i * ZelSim::kMaxPacketSize, ZelSim::kMaxPacketSize};
            messages[i].msg_hdr.msg_iov = &pieces[i];
            messages[i].msg_hdr.msg_iovlen = 1;
        }
        while (!isEnding_) {
            const int count =
                recvmmsg(socket_.Descriptor(), messages.data(), kMessages, MSG_WAITFORONE, nullptr);
            uint64_t bytes = 0;
            for (int i = 0; i < count; ++i)
                bytes += messages[static_cast<size_t>(i)].msg_len;
            bytes_ += bytes;
        }
    }

    HostSocket socket_;
    std::atomic<bool> isEnding_{false};
    std::atomic<uint64_t> bytes_{0};
    std::thread thread_;
};

// ---- Cameras
// -------------------------------------------------------------------------------------

struct WireSpeed {
    double megabytesPerSecond = 0;  // that arrived
    double cpuPerGigabyte = 0;      // seconds of the sender
};

// `cpuTime` is that of the sender until now, in nanoseconds.
WireSpeed MeasureSpeed(const CountingReceiver& receiver, const std::function<int64_t()>& cpuTime) {
    std::this_thread::sleep_for(kWarmUp);
    const int64_t start = Now();
    const int64_t cpuStart = cpuTime();
    const uint64_t bytesStart = receiver.Bytes();
    std::this_thread::sleep_for(kMeasured);
    const auto bytes = static_cast<double>(receiver.Bytes() - bytesStart);
    const auto cpu = static_cast<double>(cpuTime() - cpuStart);
    const auto time = static_cast<double>(Now() - start);
    if (bytes == 0) throw std::runtime_error("nothing arrived from the camera");
    return {bytes / time * 1e3, cpu / bytes};
}

// As fast as frames can be sent.
ZelSim::CameraConfig FastCamera() {
    ZelSim::CameraConfig config;
    config.width = 2048;
    config.height = 2048;
    config.frameRate = 0;
    return config;
}

// A simulated camera that sends.
class SendingCamera {
  public:
    SendingCamera(const BenchNetwork& network, uint16_t port, uint32_t packetSize,
                  const ZelSim::CameraConfig& config, bool segmentation = false)
        : settings_(SettingsWith(segmentation)),
          camera_(config, "GEV", ZelSim::PermanentMemory(config)) {
        RunAt(network.camera, kSenderProcessor, [&] {
            channel_ = std::make_unique<ZelSim::StreamChannel>(camera_, network.camera.address,
                                                               [this] { return settings_; });
            channel_->SetDestination(network.host.address);
            channel_->SetPacketSize(packetSize);
            channel_->SetPort(port);
            camera_.Control().LockByClient(true);
            camera_.GetAcquisition().Start();
        });
    }

  private:
    static std::shared_ptr<const ZelSim::NetworkSettings> SettingsWith(bool segmentation) {
        ZelSim::NetworkSettings settings;
        settings.segmentation = segmentation;
        return std::make_shared<const ZelSim::NetworkSettings>(settings);
    }

    const std::shared_ptr<const ZelSim::NetworkSettings> settings_;
    ZelSim::Camera camera_;
    std::unique_ptr<ZelSim::StreamChannel> channel_;
};

WireSpeed MeasureOurs(const BenchNetwork& network, uint32_t packetSize, bool segmentation) {
    const CountingReceiver receiver(network.host);
    const SendingCamera camera(network, receiver.Port(), packetSize, FastCamera(), segmentation);
    return MeasureSpeed(receiver,
                        [&] { return CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID) - receiver.CpuTime(); });
}

// arv-fake-gv-camera-0.8, as far as it takes to let it send.
class WitnessCamera {
  public:
    WitnessCamera(const BenchNetwork& network, uint16_t port, uint32_t packetSize) {
        RunAt(network.camera, kSenderProcessor, [&] {
            const std::string interface =
                inet_ntoa(NativeAddress({network.camera.address, 0}).sin_addr);
            process_.emplace(std::vector<std::string>{kProgram, "-i", interface});
        });
        RunAt(network.host, kReceiverProcessor, [&] {
            CameraControl control(network.camera.address);
            control.Take();
            // From its description: the largest image, at the highest rate.
            control.Write(0x100, 2048);
            control.Write(0x104, 2048);
            control.Write(0x138, 1000);  // microseconds from frame to frame
            control.OpenStream({network.host.address, port}, packetSize);
            control.Write(0x124, 1);  // AcquisitionStart
        });
    }

    static bool IsInstalled() { return access(kProgram, X_OK) == 0; }

    int64_t CpuTime() const { return process_->CpuTime(); }

  private:
    static constexpr const char* kProgram = "/usr/bin/arv-fake-gv-camera-0.8";

    std::optional<Process> process_;
};

WireSpeed MeasureWitness(const BenchNetwork& network, uint32_t packetSize) {
    const CountingReceiver receiver(network.host);
    const WitnessCamera camera(network, receiver.Port(), packetSize);
    return MeasureSpeed(receiver, [&] { return camera.CpuTime(); });
}

// ---- Figures
// -------------------------------------------------------------------------------------

void AddSpeeds(Report& report, const std::string& name, const std::vector<WireSpeed>& ours,
               const std::vector<WireSpeed>& witness) {
    Figure speed{"wire", "image data received, " + name, "MB/s", {}};
    Figure cost{"wire", "CPU time of the sender, " + name, "s/GB", {}};
    for (const WireSpeed& round : ours) {
        speed.rounds.push_back(round.megabytesPerSecond);
        cost.rounds.push_back(round.cpuPerGigabyte);
    }
    if (!witness.empty()) {
        speed.baseName = cost.baseName = "arv-fake-gv-camera";
        for (const WireSpeed& round : witness) {
            speed.baseRounds.push_back(round.megabytesPerSecond);
            cost.baseRounds.push_back(round.cpuPerGigabyte);
        }
    }
    report.Add(speed);
    report.Add(cost);
}

void MeasurePacketSize(Report& report, const BenchNetwork& network, uint32_t packetSize) {
    std::vector<WireSpeed> single;
    std::vector<WireSpeed> segmented;
    std::vector<WireSpeed> witness;
    for (int round = 0; round < kWireRounds; ++round) {
        single.push_back(MeasureOurs(network, packetSize, false));
        if (WitnessCamera::IsInstalled()) witness.push_back(MeasureWitness(network, packetSize));
        segmented.push_back(MeasureOurs(network, packetSize, true));
    }
    const std::string name =
        std::string(network.Name()) + ", packets of " + std::to_string(packetSize);
    AddSpeeds(report, name, single, witness);
    AddSpeeds(report, name + ", cut by the kernel", segmented, {});
}

// What so many cameras take that have sent a frame each, with their memory for resends.
double MemoryOfCameras(const BenchNetwork& network, size_t count) {
    return InChild([&] {
        const CountingReceiver receiver(network.host);
        const double before = static_cast<double>(ZelTest::ProcessState::Now().residentKiB);
        std::vector<std::unique_ptr<SendingCamera>> cameras;
        for (size_t i = 0; i < count; ++i) {
            cameras.push_back(std::make_unique<SendingCamera>(network, receiver.Port(), 1500,
                                                              ZelSim::CameraConfig()));
        }
        std::this_thread::sleep_for(kWarmUp);
        const double after = static_cast<double>(ZelTest::ProcessState::Now().residentKiB);
        return std::vector<double>{after - before};
    })[0];
}

}  // namespace

void MeasureWire(Report& report) {
    const BenchNetwork network;
    for (const size_t count : {size_t{1}, size_t{16}}) {
        report.Add({"wire",
                    "memory of VGA cameras that send, " + std::to_string(count),
                    "KiB",
                    {MemoryOfCameras(network, count)}});
    }
    MeasurePacketSize(report, network, 1500);
    MeasurePacketSize(report, network, 9000);
}

}  // namespace Bench
