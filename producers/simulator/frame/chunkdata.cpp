#include "producers/simulator/frame/chunkdata.h"

#include "producers/wire/chunktrailer.h"

namespace ZelSim {

using ZelCti::ByteOrder;
using ZelCti::kChunkTrailerSize;
using ZelCti::StoreChunkTrailer;
using ZelCti::StoreFloat;
using ZelCti::StoreInteger;

namespace {

constexpr size_t kAlignment = 4;  // of lengths, as GigE cameras must have it

constexpr uint32_t kFirstId = 0xC0DE0001;

size_t SizeOf(ChunkKind kind, size_t imageSize) {
    switch (kind) {
        case ChunkKind::Image:
            return (imageSize + kAlignment - 1) / kAlignment * kAlignment;
        case ChunkKind::Width:
        case ChunkKind::Height:
        case ChunkKind::PixelFormat:
            return sizeof(uint32_t);
        default:
            return sizeof(uint64_t);
    }
}

// Calls visit(kind, offset, size) for the chunks of a set; returns the end of the last trailer.
template <typename Visit>
size_t ForEachChunk(ChunkSet set, size_t imageSize, Visit&& visit) {
    size_t offset = 0;
    for (uint32_t number = 0; number < kNumChunkKinds; ++number) {
        const auto kind = static_cast<ChunkKind>(number);
        if (!set.Has(kind)) continue;
        const size_t size = SizeOf(kind, imageSize);
        visit(kind, offset, size);
        offset += size + kChunkTrailerSize;
    }
    return offset;
}

void WriteValue(uint8_t* bytes, size_t size, ChunkKind kind, const ChunkValues& values,
                ByteOrder order) {
    const auto integer = [&](uint64_t value) { StoreInteger(bytes, size, value, order); };
    const auto real = [&](double value) { StoreFloat(bytes, size, value, order); };
    switch (kind) {
        case ChunkKind::Image:
            return;
        case ChunkKind::Width:
            return integer(values.width);
        case ChunkKind::Height:
            return integer(values.height);
        case ChunkKind::PixelFormat:
            return integer(values.pixelFormat);
        case ChunkKind::FrameId:
            return integer(values.frameId);
        case ChunkKind::Timestamp:
            return integer(values.timestamp);
        case ChunkKind::ExposureTime:
            return real(values.exposureTime);
        case ChunkKind::Gain:
            return real(values.gain);
    }
}

}  // namespace

uint32_t ChunkIdOf(ChunkKind kind) {
    return kFirstId + static_cast<uint32_t>(kind);
}

size_t PayloadWithChunks(ChunkSet set, size_t imageSize) {
    if (set.IsEmpty()) return imageSize;
    return ForEachChunk(set, imageSize, [](ChunkKind, size_t, size_t) {});
}

void WriteChunks(uint8_t* payload, ChunkSet set, size_t imageSize, const ChunkValues& values,
                 ByteOrder transport, ByteOrder camera) {
    ForEachChunk(set, imageSize, [&](ChunkKind kind, size_t offset, size_t size) {
        WriteValue(payload + offset, size, kind, values, camera);
        StoreChunkTrailer(payload + offset + size, ChunkIdOf(kind), size, transport);
    });
}

}  // namespace ZelSim
