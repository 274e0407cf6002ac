// Chunk data behind the image of a frame.
#pragma once

#include <cstddef>
#include <cstdint>

#include "producers/wire/byteorder.h"

namespace ZelSim {

// The kinds of chunks in the order of the selector. The image is a chunk, too, and always there.
enum class ChunkKind : uint32_t {
    Image,
    Width,
    Height,
    PixelFormat,
    FrameId,
    Timestamp,
    ExposureTime,
    Gain
};
constexpr uint32_t kNumChunkKinds = 8;

// Some of the kinds.
class ChunkSet {
  public:
    ChunkSet() = default;
    explicit ChunkSet(ChunkKind only) { Set(only, true); }

    bool IsEmpty() const { return bits_ == 0; }
    bool Has(ChunkKind kind) const { return (bits_ & Bit(kind)) != 0; }
    void Set(ChunkKind kind, bool has) { bits_ = has ? bits_ | Bit(kind) : bits_ & ~Bit(kind); }
    uint32_t Bits() const { return bits_; }

  private:
    static uint32_t Bit(ChunkKind kind) { return 1U << static_cast<uint32_t>(kind); }

    uint32_t bits_ = 0;
};

// What the chunks of a frame say.
struct ChunkValues {
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t pixelFormat = 0;
    uint64_t frameId = 0;
    uint64_t timestamp = 0;   // ticks of the camera's clock
    double exposureTime = 0;  // microseconds
    double gain = 0;          // dB
};

// The number by which descriptions refer to the chunks of a kind.
uint32_t ChunkIdOf(ChunkKind kind);

// In a payload the image comes first, filled up to a multiple of four bytes; a trailer follows each
// chunk.

// Bytes of a frame with these chunks; of an image alone when the set is empty.
size_t PayloadWithChunks(ChunkSet set, size_t imageSize);

// Writes all but the image to a payload of this size: `transport` is the byte order of
// identifiers and lengths, `camera` the byte order of the values.
void WriteChunks(uint8_t* payload, ChunkSet set, size_t imageSize, const ChunkValues& values,
                 ZelCti::ByteOrder transport, ZelCti::ByteOrder camera);

}  // namespace ZelSim
