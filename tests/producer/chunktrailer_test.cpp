// Chunks that are found from the end of a payload, which a camera sent and nobody has checked.

#include "producers/wire/chunktrailer.h"

#include <vector>

#include <gtest/gtest.h>

using namespace ZelCti;

namespace {

using Bytes = std::vector<uint8_t>;

std::optional<std::vector<ChunkPlace>> Find(const Bytes& payload, ByteOrder order) {
    return FindChunks(payload.data(), payload.size(), order);
}

void ExpectChunk(const ChunkPlace& chunk, uint32_t id, size_t offset, size_t size) {
    EXPECT_EQ(id, chunk.id);
    EXPECT_EQ(offset, chunk.offset);
    EXPECT_EQ(size, chunk.size);
}

}  // namespace

TEST(ChunkTrailerTest, ChunksAreFoundInTheirOrder) {
    const Bytes big{1, 2,    3,    4,    0,    0, 1, 2, 0, 0, 0, 4,  // four bytes, chunk 0x102
                    0, 0,    0,    9,    0,    0, 0, 0,              // none, chunk 9
                    5, 0xAA, 0xBB, 0xCC, 0xDD, 0, 0, 0, 1};          // one byte
    const auto chunks = Find(big, ByteOrder::Big);
    ASSERT_TRUE(chunks);
    ASSERT_EQ(3U, chunks->size());
    ExpectChunk((*chunks)[0], 0x102, 0, 4);
    ExpectChunk((*chunks)[1], 9, 12, 0);
    ExpectChunk((*chunks)[2], 0xAABBCCDD, 20, 1);

    const Bytes little{7, 2, 1, 0, 0, 1, 0, 0, 0};
    const auto one = Find(little, ByteOrder::Little);
    ASSERT_TRUE(one);
    ASSERT_EQ(1U, one->size());
    ExpectChunk((*one)[0], 0x102, 0, 1);
}

TEST(ChunkTrailerTest, WhatDoesNotAddUpIsRefused) {
    EXPECT_FALSE(Find({1, 0, 0, 0, 2, 0, 0, 0, 2}, ByteOrder::Big)) << "longer than the payload";
    EXPECT_FALSE(Find({1, 0, 0, 0, 2, 0xFF, 0xFF, 0xFF, 0xFF}, ByteOrder::Big));
    EXPECT_FALSE(Find({9, 9, 0, 0, 0, 2, 0, 0, 0, 1}, ByteOrder::Big)) << "no trailer is left";
    EXPECT_FALSE(Find({0, 0, 0, 0, 0, 0, 0}, ByteOrder::Big)) << "half a trailer";
}

TEST(ChunkTrailerTest, ZerosAreNotChunksWithoutEnd) {
    constexpr size_t kMost = 65536;
    EXPECT_TRUE(Find(Bytes(kMost * kChunkTrailerSize), ByteOrder::Little));
    EXPECT_FALSE(Find(Bytes((kMost + 1) * kChunkTrailerSize), ByteOrder::Little));
}
