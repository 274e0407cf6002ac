// Time and memory with one camera and many, all open with their features and streaming at once.
// Each measurement is a process of its own, whose memory nothing has touched before.
#include <memory>
#include <vector>

#include "bench/child.h"
#include "bench/groups.h"
#include "bench/growth.h"
#include "bench/measure.h"
#include "bench/session.h"
#include "tests/support/processstate.h"

namespace Bench {

namespace {

constexpr size_t kMost = 64;
constexpr size_t kBuffers = 4;
constexpr int kRounds = 5;
constexpr int kComparedRounds = 25;  // with the bare loop: processes differ
constexpr int kFrames = 20000;       // of all cameras together
constexpr double kLimit = 2;

template <typename SessionCamera>
class Cameras {
  public:
    void Open(const typename SessionCamera::Host& host, size_t count) {
        for (size_t i = 0; i < count; ++i)
            cameras_.push_back(std::make_unique<SessionCamera>(host, i));
    }

    void MakeFeatures() const {
        for (const auto& camera : cameras_) {
            Require(camera->Device().GetCameraParameters(nullptr) != nullptr, "no features");
        }
    }

    void Start() const {
        for (const auto& camera : cameras_) {
            camera->Announce(kBuffers);
            camera->Start();
        }
    }

    // Fetches from one camera after the other; the time of a frame.
    double FetchFrames() const {
        FetchFromEach();
        const size_t turns = kFrames / cameras_.size();
        const double time = TimeOf([&] {
            for (size_t i = 0; i < turns; ++i)
                FetchFromEach();
        });
        return time / static_cast<double>(turns * cameras_.size());
    }

    void Stop() const {
        for (const auto& camera : cameras_)
            camera->Stop();
    }

    void Close() { cameras_.clear(); }

  private:
    void FetchFromEach() const {
        for (const auto& camera : cameras_)
            camera->NextFrame();
    }

    std::vector<std::unique_ptr<SessionCamera>> cameras_;
};

double ResidentKiB() {
    return static_cast<double>(ZelTest::ProcessState::Now().residentKiB);
}

void ConfigureMany() {
    Simulator::Get().ConfigureCameras(kMost, "width='64' height='64' frameRate='0' noFill='true'");
}

// A simulated camera makes its registers and description when they are first used; a real one has
// them.
void MakeRegisters(size_t count) {
    const Simulator& gentl = Simulator::Get();
    const BareHost host;
    for (size_t i = 0; i < count; ++i) {
        const BareCamera camera(host, i);
        uint32_t urls = 0;
        Check(gentl.GCGetNumPortURLs(camera.Port(), &urls), "GCGetNumPortURLs");
    }
}

std::vector<double> MeasureMany(size_t count) {
    ConfigureMany();
    const LibraryHost host;
    host.Info(0);
    const auto each = static_cast<double>(count);
    const double memoryBefore = ResidentKiB();
    const double make = TimeOf([&] { MakeRegisters(count); });
    Cameras<LibraryCamera> cameras;
    const double open = TimeOf([&] {
        cameras.Open(host, count);
        cameras.MakeFeatures();
    });
    const double memory = ResidentKiB();
    const double start = TimeOf([&] { cameras.Start(); });
    const double frame = cameras.FetchFrames();
    const double stop = TimeOf([&] { cameras.Stop(); });
    const double close = TimeOf([&] { cameras.Close(); });
    return {memory,
            (memory - memoryBefore) / each,
            make / each / 1e6,
            open / each / 1e6,
            start / each / 1e3,
            frame / 1e3,
            stop / each / 1e3,
            close / each / 1e6};
}

template <typename SessionCamera>
double UsOfFrame() {
    return InChild([] {
               ConfigureMany();
               const typename SessionCamera::Host host;
               Cameras<SessionCamera> cameras;
               cameras.Open(host, kMost);
               cameras.Start();
               std::vector<double> time = {cameras.FetchFrames() / 1e3};
               cameras.Stop();
               return time;
           })
        .at(0);
}

}  // namespace

void MeasureCameras(Report& report) {
    AddGrowth(report, "cameras", "camera", {1, 8, kMost}, kRounds,
              {{"resident memory of the process", "KiB", {}},
               {"memory for each camera", "KiB", kLimit},
               {"registers of a simulated camera, each camera", "ms", kLimit},
               {"opening with features, each camera", "ms", kLimit},
               {"buffers and start, each camera", "us", kLimit},
               // A single camera has its next frames ready, and its thread need not be woken.
               {"a frame from each in turn, each frame", "us", {}},
               {"stop, each camera", "us", kLimit},
               {"close, each camera", "ms", kLimit}},
              [](size_t count) { return InChild([count] { return MeasureMany(count); }); });
    std::vector<double> library;
    std::vector<double> bare;
    Interleave(
        kComparedRounds, [&] { library.push_back(UsOfFrame<LibraryCamera>()); },
        [&] { bare.push_back(UsOfFrame<BareCamera>()); });
    report.Add({"cameras", "a frame from each in turn, 64 cameras", "us", library,
                "bare GenTL loop", bare, 1.2});
}

}  // namespace Bench
