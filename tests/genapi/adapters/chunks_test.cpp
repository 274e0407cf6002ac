// Where each chunk lies in a buffer, and buffers whose trailers are wrong.
#include "genapi/adapters/chunks.h"

#include <memory>

#include <Base/GCException.h>
#include <gmock/gmock.h>

#include "genapi/adapters/hexid.h"

using namespace GENAPI_NAMESPACE::Engine;
using GENICAM_NAMESPACE::gcstring;

namespace {

using Bytes = std::vector<uint8_t>;

// Whether it is laid out in chunks; from a heap block of its own, for the sanitizers.
bool Find(const Bytes& buffer, ByteOrder order, std::vector<Chunk>& chunks) {
    const auto copy = std::make_unique<uint8_t[]>(buffer.size());
    std::copy(buffer.begin(), buffer.end(), copy.get());
    chunks.clear();
    return FindTrailedChunks(copy.get(), static_cast<int64_t>(buffer.size()), order, chunks);
}

bool IsLaidOut(const Bytes& buffer) {
    std::vector<Chunk> chunks;
    return Find(buffer, ByteOrder::kBig, chunks);
}

// Four bytes with id 1, then two with id 9EFC2CDB.
const Bytes kTwoChunks = {0x10, 0x11, 0x12, 0x13, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,
                          0x04, 0x20, 0x21, 0x9E, 0xFC, 0x2C, 0xDB, 0x00, 0x00, 0x00, 0x02};

TEST(ChunksTest, FindsFromTheEnd) {
    std::vector<Chunk> chunks;
    ASSERT_TRUE(Find(kTwoChunks, ByteOrder::kBig, chunks));
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(chunks[0].id, "9EFC2CDB");
    EXPECT_EQ(chunks[0].offset, 12);
    EXPECT_EQ(chunks[0].length, 2);
    EXPECT_EQ(chunks[1].id, "1");
    EXPECT_EQ(chunks[1].offset, 0);
    EXPECT_EQ(chunks[1].length, 4);

    EXPECT_FALSE(Find(kTwoChunks, ByteOrder::kLittle, chunks));
    ASSERT_TRUE(
        Find({0xFF, 0xDB, 0x2C, 0xFC, 0x9E, 0x01, 0x00, 0x00, 0x00}, ByteOrder::kLittle, chunks));
    EXPECT_EQ(chunks[0].id, "9EFC2CDB");
    EXPECT_EQ(chunks[0].length, 1);
}

TEST(ChunksTest, RefusesWhatDoesNotFillTheBuffer) {
    std::vector<Chunk> chunks;
    EXPECT_FALSE(FindTrailedChunks(nullptr, 22, ByteOrder::kBig, chunks));
    EXPECT_FALSE(FindTrailedChunks(kTwoChunks.data(), -1, ByteOrder::kBig, chunks));
    EXPECT_THROW(TrailedChunks(nullptr, 0, ByteOrder::kBig), GENICAM_NAMESPACE::RuntimeException);
    for (size_t size = 0; size < kTwoChunks.size(); ++size) {
        // The first chunk alone is fine, too.
        const Bytes start(kTwoChunks.begin(), kTwoChunks.begin() + static_cast<ptrdiff_t>(size));
        EXPECT_EQ(IsLaidOut(start), size == 12) << size;
        const Bytes rest(kTwoChunks.end() - static_cast<ptrdiff_t>(size), kTwoChunks.end());
        EXPECT_EQ(IsLaidOut(rest), size == 10) << size;
    }
    Bytes bad = kTwoChunks;
    for (const int length : {0x00, 0x01, 0x03, 0x0F, 0xFF}) {
        bad.back() = static_cast<uint8_t>(length);
        EXPECT_FALSE(IsLaidOut(bad)) << length;
    }
    bad[18] = 0xFF;  // 4 GiB
    EXPECT_FALSE(IsLaidOut(bad));
    bad = kTwoChunks;
    bad.resize(bad.size() + 8);  // an empty chunk
    EXPECT_FALSE(IsLaidOut(bad));
}

TEST(ChunksTest, RefusesNoise) {
    Bytes chunk(9);
    chunk.back() = 1;
    Bytes many;
    for (int i = 0; i < 65536; ++i) {
        many.insert(many.end(), chunk.begin(), chunk.end());
    }
    EXPECT_TRUE(IsLaidOut(many));
    many.insert(many.end(), chunk.begin(), chunk.end());
    EXPECT_FALSE(IsLaidOut(many));
}

TEST(HexIdTest, ComparesAsNumber) {
    for (const char* text : {"9C0a", "009c0A", "00000000000000000000009C0A", "09C0A"}) {
        std::string id;
        ASSERT_TRUE(ParseHexId(text, id)) << text;
        EXPECT_EQ(id, HexId(0x9C0A)) << text;
    }
    std::string zero = "x";
    ASSERT_TRUE(ParseHexId("0000", zero));
    EXPECT_EQ(zero, HexId(0));
    EXPECT_EQ(HexId(0xFEDCBA9876543210), "FEDCBA9876543210");

    std::string id;
    EXPECT_FALSE(ParseHexId("", id));
    EXPECT_FALSE(ParseHexId("0x9001", id));
    EXPECT_FALSE(ParseHexId("90 01", id));
    EXPECT_FALSE(ParseHexId(gcstring("90\0", 3), id));
}

}  // namespace
