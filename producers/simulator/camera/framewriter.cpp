#include "producers/simulator/camera/framewriter.h"

#include <algorithm>
#include <cstring>

#include "producers/simulator/camera/camera.h"

namespace ZelSim {

using ZelCti::FrameBuffer;
using ZelCti::FrameInfo;

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
void WriteCounter(const Camera& camera, uint64_t id, const FrameBuffer& buffer) {
    const uint64_t values[] = {id, camera.Nanoseconds()};
    std::memcpy(buffer.Base(), values, std::min(buffer.Size(), sizeof values));
}

FrameInfo InfoOf(const Camera& camera, const Frame& frame) {
    const FrameSettings& settings = *frame.settings;
    FrameInfo info;
    info.id = frame.id;
    info.timestampNs = camera.NanosecondsAt(frame.start);
    info.timestamp = camera.Ticks(info.timestampNs);
    info.pixelFormat = settings.pixelFormat->value;
    info.width = settings.width;
    info.height = settings.height;
    info.offsetX = settings.offsetX;
    info.offsetY = settings.offsetY;
    info.xPadding = settings.xPadding;
    info.yPadding = settings.yPadding;
    info.imageOffset = settings.imageOffset;
    info.isSecondOfPair = frame.id % 2 != 0;
    return info;
}

void Draw(Camera& camera, const FrameSettings& settings, const FrameBuffer& buffer,
          FrameInfo& info) {
    const CameraConfig& config = camera.Config();
    const auto payload = static_cast<size_t>(settings.PayloadSize());
    const auto pitch = static_cast<size_t>(settings.LinePitch());
    const size_t size = buffer.Size();
    info.tooLarge = payload > size;
    const size_t offset = std::min<size_t>(size, settings.imageOffset);
    const size_t room = size - offset;
    size_t numLines = std::min<size_t>(settings.height, room / pitch);
    const bool torn = IsEvery(config.incompleteEvery, info.id);
    if (torn) numLines = std::min<size_t>(numLines, settings.height / 2);
    info.incomplete = torn || info.tooLarge;
    info.deliveredHeight = numLines;
    info.sizeFilled = info.incomplete ? offset + numLines * pitch : payload;
    if (config.noFill) {
        WriteCounter(camera, info.id, buffer);
    } else {
        camera.Picture(settings)->Draw(info.id, buffer.Base() + offset, numLines);
    }
}

void DescribeChunks(const Camera& camera, const FrameSettings& settings, FrameInfo& info) {
    const ChunkSet chunks = settings.SentChunks();
    if (chunks.IsEmpty()) return;
    info.chunkOrder = camera.WireOrder();
    info.chunkLayoutId = settings.ImageSize() << kNumChunkKinds | chunks.Bits();
}

void AppendChunks(const Camera& camera, const FrameSettings& settings, uint8_t* payload,
                  FrameInfo& info) {
    const ChunkSet chunks = settings.SentChunks();
    if (chunks.IsEmpty()) return;
    ChunkValues values = ChunkValuesOf(settings);
    values.frameId = info.id;
    values.timestamp = info.timestamp;
    WriteChunks(payload, chunks, settings.ImageSize(), values, camera.WireOrder(), camera.Order());
    DescribeChunks(camera, settings, info);
}

}  // namespace

FrameInfo Announce(const Camera& camera, const Frame& frame) {
    FrameInfo info = InfoOf(camera, frame);
    info.deliveredHeight = info.height;
    info.sizeFilled = static_cast<size_t>(frame.settings->PayloadSize());
    DescribeChunks(camera, *frame.settings, info);
    return info;
}

FrameInfo WriteFrame(Camera& camera, const Frame& frame, const FrameBuffer& buffer) {
    FrameInfo info = InfoOf(camera, frame);
    Draw(camera, *frame.settings, buffer, info);
    if (!info.incomplete) AppendChunks(camera, *frame.settings, buffer.Base(), info);
    return info;
}

bool IsLost(const Camera& camera, const Frame& frame) {
    return IsEvery(camera.Config().dropEvery, frame.id);
}

}  // namespace ZelSim
