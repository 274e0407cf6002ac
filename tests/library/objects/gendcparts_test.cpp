// The parts of GenDC containers, as literal bytes, and containers that lead astray.

#include "ZelCameraApi/gendcparts.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "ZelCameraApi/base/gentl_error.h"
#include "tests/wire/bytes.h"

using namespace ZelCameraApi::Internal;
using namespace WireTest;
using ::testing::ElementsAre;

namespace {

// One component with an image of 640 x 480 bytes; the descriptor is filled up to 0x150 bytes.
const char kImage[] =
    "474e4443 01000000 0010 0100 40000000 0500000000000000 2100000000000000 00b0040000000000"
    "5001000000000000 50010000 01000000 4000000000000000"
    "0020 0000 38000000 0000 0100 0200 0300 04000000 05000000 0807060504030201 0100000000000000"
    "01000801 0000 0100 7800000000000000"
    "0042 0000 40000000 01000801 0000 0100 0000000000000000 00b0040000000000 5001000000000000"
    "80020000 e0010000 0000 0000";

// A component at 0x48 with a range of 2 x 3 pixels and 1 byte behind each line, at 0xC0, and one at
// 0x80 with a line, at 0xF4. The data, 15 and 4 bytes, are at 0x120 and 0x130.
const char kTwoComponents[] =
    "474e4443 01000000 0010 0000 48000000 0000000000000000 0000000000000000 1400000000000000"
    "2001000000000000 20010000 02000000 4800000000000000 8000000000000000"
    "0020 0000 38000000 0000 0000 0000 0000 00000000 00000000 0000000000000000 0400000000000000"
    "b8001001 0000 0100 c000000000000000"
    "0020 0000 38000000 0000 0000 0000 0000 00000000 00000000 0000000000000000 0180000000000000"
    "01000801 0000 0100 f400000000000000 0000000000000000"
    "0042 0000 34000000 b8001001 0000 0000 0000000000000000 0f00000000000000 2001000000000000"
    "02000000 03000000 0100 0000"
    "0041 0000 28000000 01000801 0000 0000 0000000000000000 0400000000000000 3001000000000000"
    "00000000"
    "d0d1d2d3d4d5d6d7 d8d9dadbdcdddedf e0e1e2e3";

// The bytes at the offset replaced.
Bytes Changed(size_t offset, const char* hex) {
    Bytes bytes = Hex(kTwoComponents);
    const Bytes changed = Hex(hex);
    std::copy(changed.begin(), changed.end(), bytes.begin() + static_cast<ptrdiff_t>(offset));
    return bytes;
}

// Of a copy that ends with its memory.
int FaultIn(const Bytes& container) {
    Bytes bytes(container.begin(), container.end());
    try {
        FindGenDcParts(bytes.data(), bytes.size());
    } catch (const zelcam_exception& fault) {
        return fault.code().value();
    }
    return 0;
}

}  // namespace

TEST(GenDcPartsTest, AnImageHasWhatItsComponentAndItsPartSay) {
    Bytes bytes = Hex(kImage);
    bytes.resize(0x150 + 640 * 480);
    const auto parts = FindGenDcParts(bytes.data(), bytes.size());
    ASSERT_EQ(parts.size(), 1U);
    const ZelBufferPart& part = parts[0];
    EXPECT_EQ(part.data, bytes.data() + 0x150);
    EXPECT_THAT((std::vector<uint64_t>{part.size, part.dataType, part.format, part.formatNamespace,
                                       part.width, part.height, part.xOffset, part.yOffset,
                                       part.xPadding, part.deliveredHeight, part.sourceId,
                                       part.regionId, part.dataPurposeId}),
                ElementsAre(640 * 480, 1, 0x01080001, 4, 640, 480, 4, 5, 0, 480, 2, 3, 1));
    bytes.pop_back();
    EXPECT_EQ(FaultIn(bytes), -1013) << "the last byte is missing";
}

TEST(GenDcPartsTest, TypesFollowFromPartAndComponent) {
    const struct {
        const char* part;
        const char* component;
        uint64_t type;
    } cases[] = {{"0042", "0400000000000000", 5},       // range
                 {"0042", "0800000000000000", 5},       // disparity
                 {"0042", "0600000000000000", 9},       // confidence
                 {"0042", "0900000000000000", 1},       // multispectral
                 {"0142", "0400000000000000", 10},      // JPEG
                 {"0242", "0400000000000000", 11},      // JPEG 2000
                 {"0342", "0400000000000000", 17899},   // H.264
                 {"0041", "0400000000000000", 17640}};  // one-dimensional
    for (const auto& c : cases) {
        Bytes bytes = Changed(0xC0, c.part);
        const Bytes component = Hex(c.component);
        std::copy(component.begin(), component.end(), bytes.begin() + 0x48 + 32);
        const auto parts = FindGenDcParts(bytes.data(), bytes.size());
        ASSERT_EQ(parts.size(), 2U);
        EXPECT_EQ(parts[0].dataType, c.type) << c.part;
        EXPECT_EQ(parts[0].height, c.type == 17640 ? 0U : 3U) << c.part;
    }
}

TEST(GenDcPartsTest, LinesAreThoseThatTheDataHold) {
    const std::pair<const char*, uint64_t> cases[] = {{"0f", 3}, {"0e", 2}, {"04", 0}};
    for (const auto& [size, lines] : cases) {
        Bytes bytes = Changed(0xC0 + 24, size);
        EXPECT_EQ(FindGenDcParts(bytes.data(), bytes.size())[0].deliveredHeight, lines) << size;
    }
}

TEST(GenDcPartsTest, InvalidComponentsHaveNoParts) {
    Bytes bytes = Changed(0x48 + 2, "01");
    const auto parts = FindGenDcParts(bytes.data(), bytes.size());
    ASSERT_EQ(parts.size(), 1U);
    EXPECT_EQ(parts[0].dataPurposeId, 0x8001U);
}

TEST(GenDcPartsTest, DamagedContainersAreRefused) {
    ASSERT_EQ(FaultIn(Hex(kTwoComponents)), 0);
    const struct {
        const char* what;
        size_t offset;
        const char* bytes;
    } cases[] = {
        {"signature", 3, "44"},
        {"type of the container", 8, "01"},
        {"no room for the offsets of the components", 12, "47"},
        {"the header of the container is larger than all", 12, "ffffffff"},
        {"the header of the container reaches into the next", 12, "49"},
        {"more components than there may be", 52, "ffffffff"},
        {"a component outside", 56, "ffffffffffffffff"},
        {"a component that begins in the last bytes", 56, "0501"},
        {"a component twice", 64, "48"},
        {"a component that is a part", 56, "c0"},
        {"a header of a component without room for offsets", 0x48 + 4, "37"},
        {"a header of a component that reaches into the next", 0x48 + 4, "39"},
        {"parts without room for their offsets", 0x48 + 46, "02"},
        {"a part outside", 0x48 + 48, "f8ffffffffffffff"},
        {"a part at the very end", 0x48 + 48, "3401"},
        {"a part of two components", 0x80 + 48, "c0"},
        {"a part without room for its size", 0xC0 + 4, "33"},
        {"a part that reaches into the next", 0xC0 + 4, "35"},
        {"data outside", 0xC0 + 32, "ffffffffffffffff"},
        {"more data than there are", 0xF4 + 24, "05"},
        {"data whose end has no number", 0xF4 + 24, "ffffffffffffffff"},
        {"data that are headers", 0xC0 + 32, "1b"},
        {"data of two parts", 0xC0 + 24, "11"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FaultIn(Changed(c.offset, c.bytes)), -1013) << c.what;
    Bytes bytes = Hex(kTwoComponents);
    for (const size_t size : {0xF3U, 0x47U, 55U, 3U, 0U}) {
        bytes.resize(size);
        EXPECT_EQ(FaultIn(bytes), -1013) << size;
    }
    EXPECT_THROW(FindGenDcParts(nullptr, 1000), zelcam_exception);
}

// Parts of a size that costs nothing, each at a place of its own: only their number is wrong.
TEST(GenDcPartsTest, ContainersHaveABoundedNumberOfParts) {
    for (const size_t count : {kMostGenDcParts, kMostGenDcParts + 1}) {
        Bytes bytes = Hex(kImage);
        const size_t component = 0x40;
        const size_t header = 48 + 8 * count;
        const size_t parts = component + header;
        bytes.resize(component + 48);
        bytes.resize(parts + 40 * count);
        const auto put = [&](size_t offset, size_t size, uint64_t value) {
            for (size_t i = 0; i < size; ++i)
                bytes[offset + i] = static_cast<uint8_t>(value >> 8 * i);
        };
        put(component + 4, 4, header);
        put(component + 46, 2, count);
        for (size_t i = 0; i < count; ++i) {
            put(component + 48 + 8 * i, 8, parts + 40 * i);
            put(parts + 40 * i, 2, 0x4100);
            put(parts + 40 * i + 4, 4, 40);
        }
        EXPECT_EQ(FaultIn(bytes), count == kMostGenDcParts ? 0 : -1013);
    }
}
