// Components of packed formats, from the definitions of the packings.

#include <cstring>
#include <vector>

#include <gmock/gmock.h>

#include "ZelImage/ZelImage.h"
#include "gentl/PFNC.h"

using ::testing::ElementsAre;
namespace PFNC = GenICam_3_0::PFNC;
using ZelImage::Packing;

namespace {

using Bytes = std::vector<uint8_t>;

uint64_t BitsAt(const uint8_t* bytes, size_t first, size_t count) {
    uint64_t value = 0;
    for (size_t i = 0; i < count; ++i)
        value |= uint64_t{bytes[(first + i) / 8] >> ((first + i) % 8) & 1U} << i;
    return value;
}

// Component `index` of a line, bit by bit.
uint64_t Expected(const ZelImage::FormatInfo& info, const uint8_t* line, size_t index) {
    const size_t depth = info.significantBits;
    switch (info.packing) {
        case Packing::Unpacked:
            return BitsAt(line, index * info.componentBytes * 8, size_t{info.componentBytes} * 8);
        case Packing::LsbFirst:
            return BitsAt(line, index * depth, depth);
        case Packing::GigEVision: {
            // The high byte is the first or third of its group; the low bits begin in the lower or
            // upper half of the second one.
            const size_t group = index / 2 * 24;
            const bool isSecond = index % 2 != 0;
            return BitsAt(line, group + (isSecond ? 16 : 0), 8) << (depth - 8) |
                   BitsAt(line, group + (isSecond ? 12 : 8), depth - 8);
        }
        default: {
            const bool is565 = info.bitsPerPixel == 16;
            const size_t starts[] = {0, is565 ? 5U : 10U, is565 ? 11U : 20U};
            const size_t sizes[] = {is565 ? 5U : 10U, is565 ? 6U : 10U, is565 ? 5U : 10U};
            return BitsAt(line, index / 3 * info.bitsPerPixel + starts[index % 3],
                          sizes[index % 3]);
        }
    }
}

uint64_t NumberAt(const uint8_t* bytes, size_t size) {
    uint64_t value = 0;
    std::memcpy(&value, bytes, size);
    return value;
}

// Four 10-bit values 1, 2, 4, 512 in five bytes: bits 0 to 9, 10 to 19, 20 to 29, 30 to 39. Two
// 12-bit ones, 0xABC and 0x123, as nibbles from the lowest, and with their high bits outside.
TEST(Unpack, LiteralBytes) {
    const auto words = [](uint64_t from, size_t width, const Bytes& bytes, uint64_t to) {
        std::vector<uint16_t> out(width);
        EXPECT_EQ(ZelImage::Convert({bytes.data(), bytes.size(), from, width, 1, 0}, to, nullptr,
                                    out.data(), width * 2, 0),
                  ZelCamErr_Success)
            << ZelImage::LastReason();
        return out;
    };
    EXPECT_THAT(words(PFNC::Mono10p, 4, {0x01, 0x08, 0x40, 0x00, 0x80}, PFNC::Mono10),
                ElementsAre(1, 2, 4, 512));
    EXPECT_THAT(words(PFNC::BayerGB12p, 2, {0xBC, 0x3A, 0x12}, PFNC::BayerGB12),
                ElementsAre(0xABC, 0x123));
    EXPECT_THAT(words(PFNC::Mono12Packed, 2, {0xAB, 0x3C, 0x12}, PFNC::Mono12),
                ElementsAre(0xABC, 0x123));
    EXPECT_THAT(words(PFNC::BayerRG10Packed, 2, {0xFF, 0x13, 0x80}, PFNC::BayerRG10),
                ElementsAre(1023, 513));
}

// Every format that can be unpacked, in lines that vectors fill and in shorter ones, from memory of
// just the size and to it.
TEST(Unpack, EveryFormatBitByBit) {
    size_t formats = 0;
    for (size_t at = 0; const uint64_t value = ZelImage::FormatAt(at); ++at) {
        ZelImage::FormatInfo info{};
        ASSERT_TRUE(ZelImage::DescribeFormat(value, &info, sizeof info));
        if (info.componentBytes == 0) continue;
        ++formats;
        for (size_t width : std::vector<size_t>{1, 2, 7, 11, 24, 43}) {
            if (info.kind == ZelImage::FormatKind::Yuv) width = (width + 3) / 4 * 4;
            ZelImage::View view{nullptr, 0, value, width, 2, 0};
            Bytes image(ZelImage::ImageSize(view));
            for (size_t i = 0; i < image.size(); ++i)
                image[i] = static_cast<uint8_t>(i * 151 + i / 7 + 29);
            view.data = image.data();
            view.size = image.size();
            Bytes numbers(ZelImage::UnpackedSize(view));
            ASSERT_EQ(ZelImage::Unpack(view, numbers.data(), numbers.size()), ZelCamErr_Success);

            // Planes and lines follow each other.
            const size_t lineBytes = ZelImage::LineBytes(value, width);
            const size_t lines = image.size() / lineBytes;
            const size_t perLine = numbers.size() / lines / info.componentBytes;
            for (size_t line = 0; line < lines; ++line) {
                for (size_t i = 0; i < perLine; ++i) {
                    ASSERT_EQ(NumberAt(&numbers[(line * perLine + i) * info.componentBytes],
                                       info.componentBytes),
                              Expected(info, &image[line * lineBytes], i))
                        << info.name << ' ' << width << ": " << line << ", " << i;
                }
            }
            if (info.unpackedFormat == 0) continue;
            Bytes converted(ZelImage::ConvertedSize(view, info.unpackedFormat, 0));
            ASSERT_EQ(ZelImage::Convert(view, info.unpackedFormat, nullptr, converted.data(),
                                        converted.size(), 0),
                      ZelCamErr_Success);
            ASSERT_EQ(converted, numbers) << info.name;
        }
    }
    EXPECT_EQ(formats, 274U);
}

// Lines with a pitch at both ends; words at an odd address.
TEST(Unpack, Pitches) {
    const Bytes image = {0xBC, 0x3A, 0x12, 99, 0xFF, 0x0F, 0x00};
    Bytes words(12, 0xA5);
    const ZelImage::View view{image.data(), image.size(), PFNC::Mono12p, 2, 2, 4};
    ASSERT_EQ(ZelImage::Convert(view, PFNC::Mono12, nullptr, &words[1], 10, 6), ZelCamErr_Success);
    EXPECT_THAT(words,
                ElementsAre(0xA5, 0xBC, 0x0A, 0x23, 0x01, 0xA5, 0xA5, 0xFF, 0x0F, 0, 0, 0xA5));
    EXPECT_EQ(ZelImage::Convert(view, PFNC::Mono12, nullptr, &words[1], 9, 6),
              ZelCamErr_InvalidArgument);
    EXPECT_EQ(ZelImage::UnpackedSize({nullptr, 0, PFNC::RGB10V1Packed, 2, 2, 0}), 0U);
}

}  // namespace
