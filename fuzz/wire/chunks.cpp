// The chunks of a payload. The first byte of an input chooses the byte order: 0 big, otherwise
// little; the rest is the payload. Chunks that are found fill it without a gap.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "producers/wire/chunktrailer.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ZelCti;
    if (size == 0) return 0;
    const ByteOrder order = data[0] == 0 ? ByteOrder::Big : ByteOrder::Little;
    const uint8_t* payload = data + 1;
    --size;
    const auto chunks = FindChunks(payload, size, order);
    if (!chunks) return 0;
    size_t end = 0;
    for (const ChunkPlace& chunk : *chunks) {
        Require(chunk.offset == end);
        end += chunk.size;
        Require(end <= size && size - end >= kChunkTrailerSize);
        uint8_t trailer[kChunkTrailerSize];
        StoreChunkTrailer(trailer, chunk.id, chunk.size, order);
        Require(std::memcmp(trailer, payload + end, kChunkTrailerSize) == 0);
        end += kChunkTrailerSize;
    }
    Require(end == size);
    return 0;
}
