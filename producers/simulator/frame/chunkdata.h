// Chunk data behind the image of a frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

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

// A chunk within the payload.
struct ChunkPlace {
    uint32_t id;
    size_t offset;
    size_t size;
};

// The number by which descriptions refer to the chunks of a kind.
uint32_t ChunkIdOf(ChunkKind kind);

// Where the chunks stand: each is followed by its id and its length, the image comes first and is
// filled up to a multiple of four bytes. No chunks for an empty set.
std::vector<ChunkPlace> ChunkPlaces(ChunkSet set, size_t imageSize);

// Bytes of a frame with these chunks; of an image alone when the set is empty.
size_t PayloadWithChunks(ChunkSet set, size_t imageSize);

// Writes all but the image to a payload of this size: the transport gives the order of ids and
// lengths, the camera that of the values.
void WriteChunks(uint8_t* payload, ChunkSet set, size_t imageSize, const ChunkValues& values,
                 ByteOrder transport, ByteOrder camera);

}  // namespace ZelSim
