// Containers whose headers and offsets lead astray.

#include "producers/wire/gendc.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/wire/bytes.h"

namespace ZelCti::GenDc {

using namespace WireTest;

namespace {

// One component at 0x40, one two-dimensional part at 0x78, four bytes of data at 0xB8.
const char kContainer[] =
    "474e4443 010203 00 0010 0100 40000000 0500000000000000 2100 0000 00000000"
    "0400000000000000 b800000000000000 b8000000 01000000 4000000000000000"
    "0020 0000 38000000 0000 0100 0200 0300 04000000 05000000 0807060504030201"
    "0101000000000000 01000801 0000 0100 7800000000000000"
    "0042 0600 40000000 01000801 0000 0900 0a00000000000000 0400000000000000 b800000000000000"
    "02000000 03000000 0400 0500 000000000000000000000000"
    "d0d1d2d3";

struct ChangedContainer {
    // The bytes at the offset replaced.
    explicit ChangedContainer(size_t offset = 0, const char* hex = "") : bytes(Hex(kContainer)) {
        const Bytes changed = Hex(hex);
        std::copy(changed.begin(), changed.end(), bytes.begin() + static_cast<int>(offset));
    }

    Result<Container> Decoded() const { return DecodeContainer(ViewOf(bytes)); }
    Result<Component> First() const { return DecodeComponent(*Decoded(), 0); }
    Result<Part> FirstPart() const { return DecodePart(*Decoded(), *First(), 0); }
    std::optional<ByteView> FirstData() const { return DataOf(*Decoded(), *FirstPart()); }

    Bytes bytes;
};

}  // namespace

TEST(GenDcTest, HeadersHaveTheirFields) {
    const ChangedContainer whole;
    const Container container = *whole.Decoded();
    EXPECT_EQ((std::array<uint8_t, 3>{1, 2, 3}), container.version);
    EXPECT_EQ(kPtpTime, container.flags);
    EXPECT_EQ(5U, container.id);
    EXPECT_EQ(kVariesDataSize | kVariesTimestamp, container.variableFields);
    EXPECT_EQ(4U, container.dataSize);
    EXPECT_EQ(0xB8U, container.dataOffset);
    EXPECT_EQ(0xB8U, container.descriptorSize);
    EXPECT_EQ(1U, container.componentCount);

    const Component component = *whole.First();
    EXPECT_EQ(1, component.groupId);
    EXPECT_EQ(2, component.sourceId);
    EXPECT_EQ(3, component.regionId);
    EXPECT_EQ(4U, component.regionOffsetX);
    EXPECT_EQ(5U, component.regionOffsetY);
    EXPECT_EQ(0x0102030405060708U, component.timestamp);
    EXPECT_EQ(0x101U, component.typeId);
    EXPECT_EQ(0x01080001U, component.format);
    EXPECT_EQ(1, component.partCount);

    const Part part = *whole.FirstPart();
    EXPECT_EQ(0x4200, part.type);
    EXPECT_EQ(6, part.flags);
    EXPECT_EQ(0x01080001U, part.format);
    EXPECT_EQ(9, part.flowId);
    EXPECT_EQ(10U, part.flowOffset);
    const auto size = std::get<Size2D>(part.size);
    EXPECT_EQ(2U, size.sizeX);
    EXPECT_EQ(3U, size.sizeY);
    EXPECT_EQ(4, size.paddingX);
    EXPECT_EQ(5, size.paddingY);
    EXPECT_EQ(whole.bytes.data() + 0xB8, whole.FirstData()->data);
    EXPECT_EQ(4U, whole.FirstData()->size);
}

TEST(GenDcTest, HeadersAreMadeAsTheyWereRead) {
    const ChangedContainer whole;
    const Bytes made = Encoded([&](ByteSpan out) {
        const uint64_t component = 0x40;
        const uint64_t part = 0x78;
        size_t size = EncodeContainer(out, *whole.Decoded(), &component);
        size += EncodeComponent(out.From(size), *whole.First(), &part);
        return size + EncodePart(out.From(size), *whole.FirstPart());
    });
    EXPECT_EQ(Bytes(whole.bytes.begin(), whole.bytes.end() - 4), made) << "all but the data";
}

TEST(GenDcTest, PartsAreMadeAndReadByTheirType) {
    Part line;
    line.type = static_cast<uint16_t>(PartType::Data1D);
    line.headerSize = kPart1DHeaderSize;
    line.size = Size1D{0x0102030405060708, 0x11};
    const Bytes bytes = Encoded([&](ByteSpan out) { return EncodePart(out, line); });
    EXPECT_EQ(Hex("0041 0000 38000000 00000000 0000 0000 0000000000000000 0000000000000000"
                  "0000000000000000 0807060504030201 1100000000000000"),
              bytes);

    ChangedContainer container(0x78, "0041");
    const auto size = std::get<Size1D>(container.FirstPart()->size);
    EXPECT_EQ(0x0000000300000002U, size.size);
    EXPECT_EQ(0x00050004U, size.padding);
    EXPECT_TRUE(
        std::holds_alternative<std::monostate>(ChangedContainer(0x78, "0043").FirstPart()->size));
}

TEST(GenDcTest, ContainersAreRefused) {
    EXPECT_EQ(Fault::WrongKey, ChangedContainer(0, "58").Decoded().GetFault());
    EXPECT_EQ(Fault::WrongKey, ChangedContainer(8, "0020").Decoded().GetFault());
    EXPECT_EQ(Fault::WrongEntrySize, ChangedContainer(12, "3f000000").Decoded().GetFault())
        << "no room for the offset of its component";
    EXPECT_EQ(Fault::TooShort, ChangedContainer(12, "bd000000").Decoded().GetFault());
    EXPECT_EQ(Fault::WrongEntrySize, ChangedContainer(52, "ffffffff").Decoded().GetFault());
    Bytes bytes = Hex(kContainer);
    for (const size_t size : {0x3FU, 55U, 3U, 0U}) {
        bytes.resize(size);
        bytes.shrink_to_fit();
        EXPECT_EQ(Fault::TooShort, DecodeContainer(ViewOf(bytes)).GetFault()) << size;
    }
}

TEST(GenDcTest, ComponentsAndPartsAreRefused) {
    EXPECT_EQ(Fault::TooShort, ChangedContainer(56, "ffffffffffffffff").First().GetFault());
    EXPECT_EQ(Fault::TooShort, ChangedContainer(56, "8d00000000000000").First().GetFault());
    EXPECT_EQ(Fault::WrongKey, ChangedContainer(0x40, "0042").First().GetFault());
    EXPECT_EQ(Fault::WrongEntrySize, ChangedContainer(0x44, "2f000000").First().GetFault());
    EXPECT_EQ(Fault::TooShort, ChangedContainer(0x44, "7d000000").First().GetFault());
    EXPECT_EQ(Fault::WrongEntrySize, ChangedContainer(0x40 + 46, "ffff").First().GetFault())
        << "no room for the offsets of its parts";

    EXPECT_EQ(Fault::TooShort,
              ChangedContainer(0x40 + 48, "ffffffffffffffff").FirstPart().GetFault());
    EXPECT_EQ(Fault::WrongEntrySize, ChangedContainer(0x7C, "33000000").FirstPart().GetFault())
        << "no room for two dimensions";
    EXPECT_EQ(Fault::TooShort, ChangedContainer(0x7C, "ffffffff").FirstPart().GetFault());

    EXPECT_FALSE(ChangedContainer(0x78 + 24, "05").FirstData());
    EXPECT_FALSE(ChangedContainer(0x78 + 24, "ffffffffffffffff").FirstData());
    EXPECT_FALSE(ChangedContainer(0x78 + 32, "bd").FirstData());
    EXPECT_FALSE(ChangedContainer(0x78 + 32, "ffffffffffffffff").FirstData());
}

}  // namespace ZelCti::GenDc
