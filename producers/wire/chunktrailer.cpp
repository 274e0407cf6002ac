#include "producers/wire/chunktrailer.h"

#include <algorithm>

namespace ZelCti {

namespace {

constexpr size_t kFieldSize = kChunkTrailerSize / 2;
constexpr size_t kMaxChunks = 65536;  // bounds the memory that a payload of zeros takes

}  // namespace

std::optional<std::vector<ChunkPlace>> FindChunks(const uint8_t* payload, size_t size,
                                                  ByteOrder order) {
    std::vector<ChunkPlace> chunks;
    for (size_t end = size; end != 0;) {
        if (end < kChunkTrailerSize || chunks.size() == kMaxChunks) return std::nullopt;
        end -= kChunkTrailerSize;
        const auto id = static_cast<uint32_t>(LoadInteger(payload + end, kFieldSize, order));
        const uint64_t length = LoadInteger(payload + end + kFieldSize, kFieldSize, order);
        if (length > end) return std::nullopt;
        end -= static_cast<size_t>(length);
        chunks.push_back({id, end, static_cast<size_t>(length)});
    }
    std::reverse(chunks.begin(), chunks.end());
    return chunks;
}

void StoreChunkTrailer(uint8_t* bytes, uint32_t id, size_t chunkSize, ByteOrder order) {
    StoreInteger(bytes, kFieldSize, id, order);
    StoreInteger(bytes + kFieldSize, kFieldSize, chunkSize, order);
}

}  // namespace ZelCti
