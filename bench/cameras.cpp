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

constexpr size_t kBuffers = 4;
constexpr int kRounds = 5;
constexpr int kFrames = 2000;  // of all cameras together
constexpr double kLimit = 2;

class Cameras {
  public:
    void Open(const LibraryHost& host, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            cameras_.push_back(std::make_unique<LibraryCamera>(host, i));
            Require(cameras_.back()->Device().GetCameraParameters(nullptr) != nullptr,
                    "no features");
        }
    }

    void Start() const {
        for (const auto& camera : cameras_) {
            camera->Announce(kBuffers);
            camera->Start();
        }
    }

    void FetchFromEach() const {
        for (const auto& camera : cameras_)
            camera->NextFrame();
    }

    void Stop() const {
        for (const auto& camera : cameras_)
            camera->Stop();
    }

    void Close() { cameras_.clear(); }

  private:
    std::vector<std::unique_ptr<LibraryCamera>> cameras_;
};

double ResidentKiB() {
    return static_cast<double>(ZelTest::ProcessState::Now().residentKiB);
}

std::vector<double> MeasureMany(size_t count) {
    Simulator::Get().ConfigureCameras(64, "width='64' height='64' frameRate='0' noFill='true'");
    const LibraryHost host;
    host.Info(0);
    const auto each = static_cast<double>(count);
    const double memoryBefore = ResidentKiB();
    Cameras cameras;
    const double open = TimeOf([&] { cameras.Open(host, count); });
    const double memory = ResidentKiB();
    const double streaming = TimeOf([&] { cameras.Start(); });
    cameras.FetchFromEach();
    const size_t turns = kFrames / count;
    const double frames = TimeOf([&] {
        for (size_t i = 0; i < turns; ++i)
            cameras.FetchFromEach();
    });
    const double stop = TimeOf([&] { cameras.Stop(); });
    const double close = TimeOf([&] { cameras.Close(); });
    const double frameCount = each * static_cast<double>(turns);
    return {memory,
            (memory - memoryBefore) / each,
            open / each / 1e6,
            streaming / each / 1e3,
            frames / frameCount / 1e3,
            stop / each / 1e3,
            close / each / 1e6};
}

}  // namespace

void MeasureCameras(Report& report) {
    AddGrowth(report, "cameras", "cameras", {1, 8, 64}, kRounds,
              {{"resident memory of the process", "KiB", {}},
               {"memory for each camera", "KiB", kLimit},
               {"opening with features, each camera", "ms", kLimit},
               {"buffers and start, each camera", "us", kLimit},
               {"one frame from each in turn, each frame", "us", kLimit},
               {"stop, each camera", "us", kLimit},
               {"close, each camera", "ms", kLimit}},
              [](size_t count) { return InChild([count] { return MeasureMany(count); }); });
}

}  // namespace Bench
