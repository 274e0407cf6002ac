// Many buffers on a stream: announced, filled and fetched, revoked. They are revoked in the order
// in which they were announced; in another order the library walks its list for each.
#include "bench/groups.h"
#include "bench/growth.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr int kRounds = 15;
constexpr double kLimit = 2;

// Buffers in the order in which they are announced.
std::vector<ZelCam::Buffer*> CreateBuffers(ZelCam::Stream& stream, size_t count) {
    std::vector<ZelCam::Buffer*> buffers;
    const size_t size = stream.GetBufferSize();
    for (size_t i = 0; i < count; ++i)
        buffers.push_back(stream.CreateBuffer(size, nullptr, nullptr));
    return buffers;
}

std::vector<double> MeasureBuffersOf(const LibraryHost& host, size_t count) {
    const LibraryCamera camera(host);
    ZelCam::Stream& stream = camera.Stream();
    const double announce = TimeOf([&] { camera.Announce(count); });
    const double start = TimeOf([&] { camera.Start(ZelCam::StartFlag_Default); });
    const auto fetchAll = [&] {
        for (size_t i = 0; i < count; ++i)
            camera.NextFrame();
    };
    const double first = TimeOf(fetchAll);
    const double again = TimeOf(fetchAll);
    camera.Stop();
    const double release = TimeOf(
        [&] { Require(stream.ReleaseBufferQueue() == ZelCamErr_Success, "the buffers stay"); });
    const std::vector<ZelCam::Buffer*> buffers = CreateBuffers(stream, count);
    const double revoke = TimeOf([&] {
        for (ZelCam::Buffer* buffer : buffers)
            stream.RevokeBuffer(buffer);
    });
    Require(stream.GetBufferQueueSize() == 0, "buffers are left");
    const double each = 1e3 * static_cast<double>(count);
    return {announce / each, start / each,   first / each,
            again / each,    release / each, revoke / each};
}

}  // namespace

void MeasureBuffers(Report& report) {
    Simulator::Get().ConfigureCameras(1, "width='64' height='64' frameRate='0' noFill='true'");
    const LibraryHost host;
    AddGrowth(report, "buffers", "buffer", {10, 100, 1000}, kRounds,
              {{"AllocBufferQueue, each buffer", "us", kLimit},
               {"StartAcquisition, each", "us", kLimit},
               {"first frame, each", "us", kLimit},
               {"further frame, each", "us", kLimit},
               {"ReleaseBufferQueue, each", "us", kLimit},
               {"RevokeBuffer, each", "us", kLimit}},
              [&](size_t count) { return MeasureBuffersOf(host, count); });
}

}  // namespace Bench
