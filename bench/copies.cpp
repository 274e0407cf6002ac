// What a frame costs in memory: whether its bytes stay where the producer wrote them, and what the
// loop allocates. Without filling, the producer writes only the number of the frame, to the start
// of the buffer.
#include <algorithm>
#include <cstring>
#include <vector>

#include "bench/allocations.h"
#include "bench/groups.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr size_t kBuffers = 8;
constexpr int kFrames = 2000;

using Memory = std::vector<std::vector<uint8_t>>;

bool IsWithin(const ZelImageInfo& image, const std::vector<uint8_t>& memory) {
    const auto* const data = static_cast<const uint8_t*>(image.imageData);
    return data >= memory.data() && data + image.imageSize <= memory.data() + memory.size();
}

bool HoldsItsNumber(const ZelImageInfo& image) {
    uint64_t number = 0;
    std::memcpy(&number, image.imageData, sizeof number);
    return number == image.frameId;
}

// The bytes of an image that does not lie, as the producer wrote it, in the announced memory.
double CopiedBytes(const ZelImageInfo& image, const Memory& announced) {
    const bool stays = std::any_of(announced.begin(), announced.end(),
                                   [&](const auto& memory) { return IsWithin(image, memory); });
    return stays && HoldsItsNumber(image) ? 0 : image.imageSize;
}

double CopiedBytesPerFrame(const LibraryCamera& camera, const Memory& announced) {
    double bytes = 0;
    for (int i = 0; i < kFrames; ++i) {
        ZelCam::Buffer* const buffer = camera.AwaitFrame();
        bytes += CopiedBytes(*buffer->GetImage(), announced);
        camera.Stream().QueueBuffer(buffer);
    }
    return bytes / kFrames;
}

// By the thread of the loop, when each buffer has been through it.
double AllocatedBytesPerFrame(const LibraryCamera& camera) {
    const uint64_t before = AllocationsOfThread().bytes;
    for (int i = 0; i < kFrames; ++i)
        camera.NextFrame();
    return static_cast<double>(AllocationsOfThread().bytes - before) / kFrames;
}

void Measure(Report& report, const std::string& name, const std::string& attributes) {
    Simulator::Get().ConfigureCameras(1, attributes + " frameRate='0' noFill='true'");
    const LibraryHost host;
    const LibraryCamera camera(host);
    Memory memory(kBuffers, std::vector<uint8_t>(camera.Stream().GetBufferSize()));
    const uint64_t before = AllocationsOfThread().calls;
    for (auto& each : memory) {
        ZelCam::Buffer* const buffer =
            camera.Stream().SetBuffer(each.data(), each.size(), nullptr, nullptr);
        Require(camera.Stream().QueueBuffer(buffer) == ZelCamErr_Success, "no buffers");
    }
    Require(AllocationsOfThread().calls != before, "allocations are not counted");
    camera.Start();
    report.Add({"copies",
                "image bytes copied for a frame, " + name,
                "bytes",
                {CopiedBytesPerFrame(camera, memory)},
                "",
                {},
                0,
                true});
    report.Add({"copies",
                "bytes allocated for a frame, " + name,
                "bytes",
                {AllocatedBytesPerFrame(camera)},
                "",
                {},
                0,
                true});
    camera.Stop();
    Require(camera.Stream().ReleaseBufferQueue() == ZelCamErr_Success, "the buffers stay");
}

}  // namespace

void MeasureCopies(Report& report) {
    Measure(report, "VGA", "width='640' height='480'");
    Measure(report, "12 MP", "width='4096' height='3000'");
}

}  // namespace Bench
