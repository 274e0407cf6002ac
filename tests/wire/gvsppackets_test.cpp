// The arithmetic of blocks, with numbers that were measured or calculated by hand.

#include "producers/wire/gvsppackets.h"

#include <gtest/gtest.h>

#include "tests/wire/gvspcontents.h"

namespace ZelCti::Gvsp {

namespace {

struct LayoutCase {
    uint64_t size;
    size_t packetSize;  // of the register
    bool extended;
    size_t perPacket;
    uint32_t dataPackets;
    size_t lastSize;
};

std::optional<uint64_t> PictureSize(uint32_t pixelFormat, uint32_t sizeX, uint32_t sizeY,
                                    uint16_t paddingX = 0, uint16_t paddingY = 0) {
    return ImageSize(pixelFormat, {sizeX, sizeY, 1, 2, paddingX, paddingY});
}

}  // namespace

TEST(GvspPacketsTest, HeadersTakeTheirShareOfAPacket) {
    using Format = PacketFormat;
    EXPECT_EQ(1500U - 36, DataPerPacket(1500, false, Format::Payload));
    EXPECT_EQ(1500U - 48, DataPerPacket(1500, true, Format::Payload));
    EXPECT_EQ(1500U - 44, DataPerPacket(1500, false, Format::PayloadH264));
    for (const auto format :
         {Format::PayloadH264, Format::PayloadMultiZone, Format::PayloadMultiPart})
        EXPECT_EQ(1500U - 56, DataPerPacket(1500, true, format));
    EXPECT_EQ(1500U - 64, DataPerPacket(1500, true, Format::PayloadGenDc));

    EXPECT_EQ(1U, DataPerPacket(37, false, Format::Payload));
    EXPECT_EQ(0U, DataPerPacket(36, false, Format::Payload));
    EXPECT_EQ(0U, DataPerPacket(0, true, Format::Payload));
}

TEST(GvspPacketsTest, BlocksAreCutIntoFullPackets) {
    constexpr uint64_t kImage = 2073600;  // 1920 * 1080
    const LayoutCase cases[] = {
        {3072, 1400, false, 1364, 3, 344},  // captured
        {kImage, 1500, false, 1464, 1417, 576}, {kImage, 9000, false, 8964, 232, 2916},
        {kImage, 1500, true, 1452, 1429, 144},  {1464, 1500, false, 1464, 1, 1464},
        {1465, 1500, false, 1464, 2, 1},        {2928, 1500, false, 1464, 2, 1464},
        {1, 1500, false, 1464, 1, 1},
    };
    for (const LayoutCase& expected : cases) {
        SCOPED_TRACE(expected.size);
        const size_t perPacket =
            DataPerPacket(expected.packetSize, expected.extended, PacketFormat::Payload);
        EXPECT_EQ(expected.perPacket, perPacket);
        const PacketLayout layout = *PacketLayout::Of(expected.size, perPacket, expected.extended);
        const uint32_t last = layout.DataPackets();
        EXPECT_EQ(expected.dataPackets, last);
        EXPECT_EQ(last + 1, layout.TrailerId());
        EXPECT_EQ(0U, layout.OffsetOf(1));
        EXPECT_EQ(expected.lastSize, layout.SizeOf(last));
        EXPECT_EQ(expected.size, layout.OffsetOf(last) + layout.SizeOf(last));
        EXPECT_FALSE(layout.IsData(0));
        EXPECT_TRUE(layout.IsData(last));
        EXPECT_FALSE(layout.IsData(last + 1));
    }
    EXPECT_EQ(1364U, PacketLayout::Of(3072, 1364, false)->SizeOf(2));
    EXPECT_EQ(1364U, PacketLayout::Of(3072, 1364, false)->OffsetOf(2));
    EXPECT_EQ(1U, PacketLayout::Of(0, 1364, false)->TrailerId()) << "a block without data";
}

TEST(GvspPacketsTest, IdsBoundTheBlocks) {
    EXPECT_FALSE(PacketLayout::Of(1, 0, false));
    EXPECT_EQ(0xFFFFFEU, PacketLayout::Of(0xFFFFFD, 1, false)->TrailerId());
    EXPECT_FALSE(PacketLayout::Of(0xFFFFFE, 1, false));
    EXPECT_EQ(0xFFFFFFFEU, PacketLayout::Of(0xFFFFFFFD, 1, true)->TrailerId());
    EXPECT_FALSE(PacketLayout::Of(0xFFFFFFFE, 1, true));
    EXPECT_FALSE(PacketLayout::Of(UINT64_MAX, 8952, true));
    // The last offset of a block of more than 32 bits.
    EXPECT_EQ(0xFFFFFFFCULL * 8952,
              PacketLayout::Of(0xFFFFFFFDULL * 8952, 8952, true)->OffsetOf(0xFFFFFFFD));
}

TEST(GvspPacketsTest, PartsBeginPackets) {
    std::vector<PartTrailer> parts{{1, 25600, 100}, {9, 25600, 100}};
    EXPECT_EQ(36U, PacketsForParts(parts, 1444)) << "18 each; in one run they would be 36";
    parts[0].length = 1;
    parts.push_back({10, 0, 0});
    EXPECT_EQ(19U, PacketsForParts(parts, 1444));
}

TEST(GvspPacketsTest, PicturesHaveWholeBytesInALine) {
    EXPECT_EQ(2073600U, PictureSize(kMono8, 1920, 1080));
    EXPECT_EQ(2U * (3 + 4) + 5, PictureSize(kMono8, 3, 2, 4, 5));
    EXPECT_EQ(2U * 5, PictureSize(0x010C0006, 3, 2)) << "36 bits a line";
    EXPECT_EQ(2U * 9, PictureSize(0x02180014, 3, 2));
    EXPECT_EQ(0U, PictureSize(kMono8, 0, UINT32_MAX));
    EXPECT_EQ(0U, PictureSize(kMono8, UINT32_MAX, 0));
    EXPECT_EQ(uint64_t{UINT32_MAX} * UINT32_MAX, PictureSize(kMono8, UINT32_MAX, UINT32_MAX));
    EXPECT_FALSE(PictureSize(0x02180014, UINT32_MAX, UINT32_MAX));
    EXPECT_FALSE(PictureSize(0x02FF0000, UINT32_MAX, UINT32_MAX, UINT16_MAX, UINT16_MAX));
}

TEST(GvspPacketsTest, BlockIdsReturnToOne) {
    EXPECT_EQ(2U, NextBlockId(1, false));
    EXPECT_EQ(65535U, NextBlockId(65534, false));
    EXPECT_EQ(1U, NextBlockId(65535, false));
    EXPECT_EQ(65536U, NextBlockId(65535, true));
    EXPECT_EQ(1U, NextBlockId(UINT64_MAX, true));

    EXPECT_EQ(1, BlockIdDifference(65535, 1, false));
    EXPECT_EQ(-1, BlockIdDifference(1, 65535, false));
    EXPECT_EQ(0, BlockIdDifference(77, 77, false));
    EXPECT_EQ(3, BlockIdDifference(65534, 2, false));
    EXPECT_EQ(32767, BlockIdDifference(1, 32768, false));
    EXPECT_EQ(-32767, BlockIdDifference(1, 32769, false)) << "the shorter way";
    EXPECT_EQ(1, BlockIdDifference(65535, 65536, true));
    EXPECT_EQ(-65534, BlockIdDifference(65535, 1, true));
    EXPECT_EQ(-1, BlockIdDifference(0, UINT64_MAX, true));
}

}  // namespace ZelCti::Gvsp
