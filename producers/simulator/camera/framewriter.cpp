#include "producers/simulator/camera/framewriter.h"

#include <algorithm>
#include <cstring>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/camera/gendcdescriptor.h"
#include "producers/wire/gvspleader.h"

namespace ZelSim {

using ZelCti::FrameBuffer;
using ZelCti::FrameInfo;
using ZelCti::FramePart;

namespace {

// As transports show a part for which GenTL has no number.
constexpr GenTL::PARTDATATYPE_ID kChunkPart =
    GenTL::PART_DATATYPE_CUSTOM_ID + static_cast<int32_t>(ZelCti::Gvsp::PartType::ChunkData);

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
void WriteCounter(const Camera& camera, uint64_t id, uint8_t* bytes, size_t room) {
    const uint64_t values[] = {id, camera.Nanoseconds()};
    std::memcpy(bytes, values, std::min(room, sizeof values));
}

FramePart PartOf(const FrameSettings& settings, const ComponentTraits& component, size_t offset) {
    FramePart part;
    part.type = component.partType;
    part.offset = offset;
    part.dataSize = static_cast<size_t>(settings.PartSize(component));
    part.format = settings.FormatOf(component);
    part.width = settings.width;
    part.height = settings.height;
    part.offsetX = settings.offsetX;
    part.offsetY = settings.offsetY;
    part.xPadding = settings.xPadding;
    part.deliveredHeight = settings.height;
    part.sourceId = kSourceId;
    part.regionId = kRegionId;
    part.purposeId = component.id;
    return part;
}

// Who sends no parts sends the first of them, as the image that the frame has otherwise.
void DescribeParts(const FrameSettings& settings, FrameInfo& info) {
    info.payloadType = settings.payload == PayloadForm::GenDc ? GenTL::PAYLOAD_TYPE_GENDC
                                                              : GenTL::PAYLOAD_TYPE_MULTI_PART;
    info.hasImage = false;
    info.parts.reserve(kNumComponents + 1);  // and that of the chunks
    auto offset = static_cast<size_t>(settings.PartsBegin());
    for (const ComponentTraits& component : kComponents) {
        if (!settings.Has(component)) continue;
        info.parts.push_back(PartOf(settings, component, offset));
        offset += info.parts.back().dataSize;
    }
    info.imageOffset = info.parts.front().offset;
    info.pixelFormat = info.parts.front().format;
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
    if (settings.HasParts()) DescribeParts(settings, info);
    return info;
}

// Leaves whole lines of a part that has no room, or whose lower half is missing.
void CutPart(FramePart& part, size_t pitch, size_t bufferSize, bool torn) {
    part.offset = std::min(part.offset, bufferSize);
    const size_t room = bufferSize - part.offset;
    if (!torn && part.dataSize <= room) return;
    part.deliveredHeight = std::min(torn ? part.height / 2 : part.height, room / pitch);
    part.dataSize = part.deliveredHeight * pitch;
}

void DrawPart(Camera& camera, const FrameSettings& settings, const ComponentTraits& component,
              uint64_t id, uint8_t* image, const FramePart& part) {
    const auto pitch = static_cast<size_t>(settings.LinePitch(component));
    switch (component.component) {
        case Component::Intensity:
            return camera.Picture(settings)->Draw(id, image, part.deliveredHeight);
        case Component::Range:
            return DrawRange(id, part.width, image, pitch, part.deliveredHeight);
        case Component::Confidence:
            return DrawConfidence(id, part.width, image, pitch, part.deliveredHeight);
    }
}

void DrawParts(Camera& camera, const FrameSettings& settings, const FrameBuffer& buffer,
               FrameInfo& info) {
    const CameraConfig& config = camera.Config();
    const auto payload = static_cast<size_t>(settings.PayloadSize());
    info.tooLarge = payload > buffer.Size();
    const bool torn = IsEvery(config.incompleteEvery, info.id);
    info.incomplete = torn || info.tooLarge;
    info.sizeFilled = std::min(info.parts.front().offset, buffer.Size());
    auto part = info.parts.begin();
    for (const ComponentTraits& component : kComponents) {
        if (!settings.Has(component)) continue;
        CutPart(*part, static_cast<size_t>(settings.LinePitch(component)), buffer.Size(), torn);
        if (!config.noFill)
            DrawPart(camera, settings, component, info.id, buffer.Base() + part->offset, *part);
        if (part->dataSize != 0) info.sizeFilled = part->offset + part->dataSize;
        ++part;
    }
    const FramePart& first = info.parts.front();
    if (config.noFill)
        WriteCounter(camera, info.id, buffer.Base() + first.offset, buffer.Size() - first.offset);
    if (!info.incomplete) info.sizeFilled = payload;
    info.deliveredHeight = first.deliveredHeight;
    const auto descriptorSize = static_cast<size_t>(settings.PartsBegin());
    if (descriptorSize != 0 && descriptorSize <= buffer.Size())
        WriteGenDcDescriptor(settings, info, {buffer.Base(), descriptorSize});
}

void DrawImage(Camera& camera, const FrameSettings& settings, const FrameBuffer& buffer,
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
        WriteCounter(camera, info.id, buffer.Base(), buffer.Size());
    } else {
        camera.Picture(settings)->Draw(info.id, buffer.Base() + offset, numLines);
    }
}

void DescribeChunks(const Camera& camera, const FrameSettings& settings, FrameInfo& info) {
    const ChunkSet chunks = settings.SentChunks();
    if (chunks.IsEmpty()) return;
    info.chunkOrder = camera.WireOrder();
    const uint64_t before = settings.HasParts() ? settings.PartsEnd() : settings.ImageSize();
    info.chunkLayoutId = before << kNumChunkKinds | chunks.Bits();
    if (!settings.HasParts()) return;
    info.chunkBegin = static_cast<size_t>(before);
    FramePart part;
    part.type = kChunkPart;
    part.offset = info.chunkBegin;
    part.dataSize = static_cast<size_t>(settings.PayloadSize() - before);
    info.parts.push_back(part);
}

void AppendChunks(const Camera& camera, const FrameSettings& settings, uint8_t* payload,
                  FrameInfo& info) {
    const ChunkSet chunks = settings.SentChunks();
    if (chunks.IsEmpty()) return;
    ChunkValues values = ChunkValuesOf(settings);
    values.frameId = info.id;
    values.timestamp = info.timestamp;
    DescribeChunks(camera, settings, info);
    const size_t image = settings.HasParts() ? 0 : static_cast<size_t>(settings.ImageSize());
    WriteChunks(payload + info.chunkBegin, chunks, image, values, camera.WireOrder(),
                camera.Order());
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
    if (frame.settings->HasParts()) {
        DrawParts(camera, *frame.settings, buffer, info);
    } else {
        DrawImage(camera, *frame.settings, buffer, info);
    }
    if (!info.incomplete) AppendChunks(camera, *frame.settings, buffer.Base(), info);
    return info;
}

bool IsLost(const Camera& camera, const Frame& frame) {
    return IsEvery(camera.Config().dropEvery, frame.id);
}

}  // namespace ZelSim
