// Chunk data: parts of a payload, each followed by a trailer with its identifier and its length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "producers/wire/byteorder.h"

namespace ZelCti {

constexpr size_t kChunkTrailerSize = 8;

// A chunk within a payload, without its trailer.
struct ChunkPlace {
    uint32_t id;
    size_t offset;
    size_t size;
};

// The chunks of a payload from the first byte on. The last trailer ends the payload, so they are
// found from there. None when the trailers do not add up to the payload, or are more than 65,536.
std::optional<std::vector<ChunkPlace>> FindChunks(const uint8_t* payload, size_t size,
                                                  ByteOrder order);

void StoreChunkTrailer(uint8_t* bytes, uint32_t id, size_t chunkSize, ByteOrder order);

}  // namespace ZelCti
