#include "producers/simulator/frame/frame.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "producers/server/modules/buffer.h"
#include "producers/simulator/camera/camera.h"

namespace ZelSim {

namespace {

// Whether this is the Nth, 2Nth, ... frame; never for 0.
bool IsEvery(uint32_t n, uint64_t id) {
    return n != 0 && (id + 1) % n == 0;
}

ChunkValues ChunkValuesOf(const FrameSettings& settings) {
    ChunkValues values;
    values.width = settings.width;
    values.height = settings.height;
    values.pixelFormat = settings.pixelFormat->value;
    values.exposureTime = settings.exposureTime / 10.0;
    values.gain = settings.gain[static_cast<size_t>(Channel::All)] / 10.0;
    return values;
}

// In place of a picture: the number of the frame, and the time at which it is complete.
void WriteCounter(const Camera& camera, uint64_t id, const BufferMemory& memory) {
    const uint64_t values[] = {id, camera.Nanoseconds()};
    std::memcpy(memory.base, values, std::min(memory.size, sizeof values));
}

void Draw(Camera& camera, const BufferMemory& memory, FrameInfo& frame) {
    const CameraConfig& config = camera.Config();
    const FrameSettings& settings = *frame.settings;
    const auto payload = static_cast<size_t>(settings.PayloadSize());
    const auto pitch = static_cast<size_t>(settings.LinePitch());
    frame.tooLarge = payload > memory.size;
    const size_t offset = std::min<size_t>(memory.size, settings.imageOffset);
    const size_t room = memory.size - offset;
    size_t numLines = std::min<size_t>(settings.height, room / pitch);
    const bool torn = IsEvery(config.incompleteEvery, frame.id);
    if (torn) numLines = std::min<size_t>(numLines, settings.height / 2);
    frame.incomplete = torn || frame.tooLarge;
    frame.deliveredHeight = numLines;
    frame.sizeFilled = frame.incomplete ? offset + numLines * pitch : payload;
    if (config.noFill) {
        WriteCounter(camera, frame.id, memory);
    } else {
        camera.Picture(settings)->Draw(frame.id, memory.base + offset, numLines);
    }
}

void AppendChunks(const Camera& camera, uint8_t* payload, FrameInfo& frame) {
    frame.chunks = frame.settings->SentChunks();
    if (frame.chunks.IsEmpty()) return;
    ChunkValues values = ChunkValuesOf(*frame.settings);
    values.frameId = frame.id;
    values.timestamp = camera.Ticks(frame.timestampNs);
    WriteChunks(payload, frame.chunks, frame.settings->ImageSize(), values, camera.WireOrder(),
                camera.Registers()->Order());
}

}  // namespace

void WriteFrame(Camera& camera, const Frame& frame, Buffer& buffer) {
    FrameInfo info;
    info.settings = frame.settings;
    info.id = frame.id;
    info.timestampNs = camera.NanosecondsAt(frame.start);
    Draw(camera, buffer.Memory(), info);
    if (!info.incomplete) AppendChunks(camera, buffer.Memory().base, info);
    buffer.SetFrame(std::move(info));
}

bool IsLost(const Camera& camera, const Frame& frame) {
    return IsEvery(camera.Config().dropEvery, frame.id);
}

}  // namespace ZelSim
