// Pictures from literal bytes. The expected values were worked out by hand from the definitions of
// the formats.

#include "tools/imaging/decode.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "gentl/PFNC.h"
#include "tools/imaging/pixelformat.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace PFNC = GenICam_3_0::PFNC;

namespace {

using Bytes = std::vector<uint8_t>;

Imaging::Picture Decode(uint64_t format, size_t width, size_t height, const Bytes& bytes,
                        size_t padding = 0) {
    return Imaging::Decode({bytes.data(), bytes.size(), format, width, height, padding});
}

std::string FailureOf(uint64_t format, size_t width, size_t height, const Bytes& bytes,
                      size_t padding = 0) {
    try {
        Decode(format, width, height, bytes, padding);
    } catch (const Imaging::Error& error) {
        return error.what();
    }
    return "";
}

// 0x3FF and 0x155 stretched from 10 to 16 bits: 341 * 65535 / 1023 = 21845.
TEST(DecodeMono, UnpackedDepthsAreStretchedToWhite) {
    EXPECT_THAT(Decode(PFNC::Mono8, 3, 1, {0, 127, 255}).samples, ElementsAre(0, 127, 255));
    EXPECT_THAT(Decode(PFNC::Mono10, 3, 1, {0, 0, 0x55, 0x01, 0xFF, 0x03}).samples,
                ElementsAre(0, 21845, 65535));
    EXPECT_THAT(Decode(PFNC::Mono12, 2, 1, {0xFF, 0x0F, 0x00, 0x08}).samples,
                ElementsAre(65535, 32776));  // 2048 * 65535 / 4095 = 32775.5
    EXPECT_THAT(Decode(PFNC::Mono14, 2, 1, {0xFF, 0x3F, 0x01, 0x00}).samples,
                ElementsAre(65535, 4));
    const auto deep = Decode(PFNC::Mono16, 2, 1, {0x34, 0x12, 0xFF, 0xFF});
    EXPECT_THAT(deep.samples, ElementsAre(0x1234, 65535));
    EXPECT_EQ(deep.depth, 16U);
    EXPECT_EQ(deep.channels, 1U);
}

TEST(DecodeMono, BitsAboveTheDepthAreCutOffAtWhite) {
    EXPECT_THAT(Decode(PFNC::Mono10, 1, 1, {0x00, 0x04}).samples, ElementsAre(65535));
}

// Four 10-bit values 1, 2, 4, 512 in five bytes: bits 0 to 9, 10 to 19, 20 to 29, 30 to 39.
TEST(DecodeMono, LsbFirst10) {
    const Bytes line = {0x01, 0x08, 0x40, 0x00, 0x80};
    EXPECT_THAT(Decode(PFNC::Mono10p, 4, 1, line).samples, ElementsAre(64, 128, 256, 32800));
}

// 0xABC and 0x123 as nibbles from the lowest: C B A 3 2 1.
TEST(DecodeMono, LsbFirst12AndOddWidths) {
    EXPECT_THAT(Decode(PFNC::Mono12p, 2, 1, {0xBC, 0x3A, 0x12}).samples,
                ElementsAre(0xABCA, 0x1231));  // 2748 * 65535 / 4095 = 43978.07
    // Three pixels are 36 bits: the line takes five bytes, the next starts with the sixth.
    const Bytes two = {0xFF, 0x0F, 0x00, 0xFF, 0x0F, 0x00, 0xF0, 0xFF, 0x00, 0x00};
    EXPECT_THAT(Decode(PFNC::Mono12p, 3, 2, two).samples,
                ElementsAre(65535, 0, 65535, 0, 65535, 0));
}

TEST(DecodeMono, FewerThanEightBits) {
    const auto picture = Decode(PFNC::Mono1p, 10, 1, {0x81, 0x02});
    EXPECT_THAT(picture.samples, ElementsAre(255, 0, 0, 0, 0, 0, 0, 255, 0, 255));
    EXPECT_EQ(picture.depth, 8U);
    EXPECT_THAT(Decode(PFNC::Mono4p, 2, 1, {0xF1}).samples, ElementsAre(17, 255));
}

// 0xABC and 0x123: high bits AB and 12 outside, low nibbles C (first pixel, low half) and 3.
TEST(DecodeMono, GigEVision12Packed) {
    EXPECT_THAT(Decode(PFNC::Mono12Packed, 2, 1, {0xAB, 0x3C, 0x12}).samples,
                ElementsAre(0xABCA, 0x1231));
    EXPECT_THAT(Decode(PFNC::Mono12Packed, 3, 1, {0, 0, 0, 0xFF, 0x0F}).samples,
                ElementsAre(0, 0, 65535));
}

// 1023 and 513 (binary 10 0000 0001): high bytes FF and 80, low pairs 11 at bit 0 and 01 at bit 4.
TEST(DecodeMono, GigEVision10Packed) {
    EXPECT_THAT(Decode(PFNC::Mono10Packed, 2, 1, {0xFF, 0x13, 0x80}).samples,
                ElementsAre(65535, 32864));  // 513 * 65535 / 1023 = 32863.9
}

TEST(Decode, PaddingBetweenLinesIsSkipped) {
    EXPECT_THAT(Decode(PFNC::Mono8, 2, 2, {1, 2, 99, 99, 3, 4}, 2).samples,
                ElementsAre(1, 2, 3, 4));
}

// A mosaic of one flat colour (R 10, G 20, B 30) decodes to that colour everywhere, borders and
// corners too, in each phase.
TEST(DecodeBayer, FlatColourInEveryPhase) {
    const struct {
        uint64_t format;
        Bytes evenLine, oddLine;
    } phases[] = {{PFNC::BayerGR8, {20, 10, 20}, {30, 20, 30}},
                  {PFNC::BayerRG8, {10, 20, 10}, {20, 30, 20}},
                  {PFNC::BayerGB8, {20, 30, 20}, {10, 20, 10}},
                  {PFNC::BayerBG8, {30, 20, 30}, {20, 10, 20}}};
    for (const auto& phase : phases) {
        Bytes mosaic = phase.evenLine;
        mosaic.insert(mosaic.end(), phase.oddLine.begin(), phase.oddLine.end());
        mosaic.insert(mosaic.end(), phase.evenLine.begin(), phase.evenLine.end());
        const auto picture = Decode(phase.format, 3, 3, mosaic);
        ASSERT_EQ(picture.channels, 3U);
        for (size_t i = 0; i < picture.samples.size(); i += 3) {
            EXPECT_EQ(picture.samples[i], 10) << phase.format << " at " << i;
            EXPECT_EQ(picture.samples[i + 1], 20) << phase.format << " at " << i;
            EXPECT_EQ(picture.samples[i + 2], 30) << phase.format << " at " << i;
        }
    }
}

// R  G  R        10  40  20
// G  B  G   =    50  90  60
// R  G  R        30  70  41
TEST(DecodeBayer, MissingColoursAreMeansOfTheNeighbours) {
    const auto picture = Decode(PFNC::BayerRG8, 3, 3, {10, 40, 20, 50, 90, 60, 30, 70, 41});
    const auto& s = picture.samples;
    const std::vector<std::vector<uint16_t>> expected = {
        {10, 45, 90}, {15, 40, 90}, {20, 50, 90},  // mean(40,50), 90; mean(10,20); mean(40,60)
        {20, 50, 90}, {25, 55, 90}, {31, 60, 90},  // mean(10,30); all four; mean(20,41) = 30.5
        {30, 60, 90}, {36, 70, 90}, {41, 65, 90}};
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_THAT(std::vector<uint16_t>(&s[i * 3], &s[i * 3] + 3),
                    testing::ElementsAreArray(expected[i]))
            << "pixel " << i;
    }
}

// The definition, pixel by pixel: the mean of the neighbours that have the colour.
TEST(DecodeBayer, EveryPixelOfEveryPhaseFollowsTheDefinition) {
    constexpr size_t kWidth = 7;
    constexpr size_t kHeight = 6;
    const struct {
        uint64_t format;
        const char* cell;  // two lines of two pixels
    } phases[] = {{PFNC::BayerRG8, "RGGB"},
                  {PFNC::BayerGR8, "GRBG"},
                  {PFNC::BayerGB8, "GBRG"},
                  {PFNC::BayerBG8, "BGGR"}};
    Bytes bytes;
    for (size_t i = 0; i < kWidth * kHeight; ++i)
        bytes.push_back(static_cast<uint8_t>(i * 97 % 251));
    for (const auto& phase : phases) {
        const auto colour = [&](size_t x, size_t y) { return phase.cell[y % 2 * 2 + x % 2]; };
        const auto picture = Decode(phase.format, kWidth, kHeight, bytes);
        for (size_t i = 0; i < kWidth * kHeight * 3; ++i) {
            const size_t x = i / 3 % kWidth;
            const size_t y = i / 3 / kWidth;
            const char wanted = "RGB"[i % 3];
            size_t sum = 0;
            size_t count = 0;
            for (size_t at = 0; at < kWidth * kHeight; ++at) {
                const size_t dx = at % kWidth > x ? at % kWidth - x : x - at % kWidth;
                const size_t dy = at / kWidth > y ? at / kWidth - y : y - at / kWidth;
                const size_t reach = colour(x, y) == wanted ? 0 : 1;
                if (dx > reach || dy > reach || colour(at % kWidth, at / kWidth) != wanted)
                    continue;
                sum += bytes[at];
                ++count;
            }
            EXPECT_EQ(picture.samples[i], (sum + count / 2) / count) << phase.cell << i;
        }
    }
}

TEST(DecodeBayer, PackedIsUnpackedFirst) {
    // R 0xFFF, G 0; G 0, B 0xFFF: full red and blue, no green.
    const Bytes packed = {0xFF, 0x0F, 0x00, 0x00, 0xF0, 0xFF};
    EXPECT_THAT(Decode(PFNC::BayerRG12Packed, 2, 2, packed).samples,
                ElementsAre(65535, 0, 65535, 65535, 0, 65535, 65535, 0, 65535, 65535, 0, 65535));
    EXPECT_THAT(FailureOf(PFNC::BayerRG8, 4, 1, {1, 2, 3, 4}), HasSubstr("2 by 2"));
}

TEST(DecodeRgb, EveryOrderBecomesRgb) {
    EXPECT_THAT(Decode(PFNC::RGB8, 1, 1, {1, 2, 3}).samples, ElementsAre(1, 2, 3));
    EXPECT_THAT(Decode(PFNC::BGR8, 2, 1, {3, 2, 1, 6, 5, 4}).samples,
                ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(Decode(PFNC::RGBa8, 2, 1, {1, 2, 3, 77, 4, 5, 6, 88}).samples,
                ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_THAT(Decode(PFNC::BGRa8, 1, 1, {3, 2, 1, 77}).samples, ElementsAre(1, 2, 3));
    EXPECT_THAT(Decode(PFNC::BGR10, 1, 1, {0xFF, 0x03, 0, 0, 0x55, 0x01}).samples,
                ElementsAre(21845, 0, 65535));
    EXPECT_THAT(Decode(PFNC::RGB16, 1, 1, {1, 0, 2, 0, 3, 4}).samples, ElementsAre(1, 2, 0x403));
}

// Blue 1, green 2, red 1023, from the lowest bit.
TEST(DecodeRgb, BitPacked) {
    EXPECT_THAT(Decode(PFNC::BGR10p, 1, 1, {0x01, 0x08, 0xF0, 0x3F}).samples,
                ElementsAre(65535, 128, 64));
}

// Y 128 with U 128 and V 255: R = 128 + 1.402 * 127 = 306 (255), G = 128 - 0.714136 * 127 = 37.3,
// B = 128. With U 255 and V 128: R 128, G = 128 - 0.344136 * 127 = 84.3, B = 353 (255).
TEST(DecodeYuv, ComponentOrderConversionAndClamp) {
    EXPECT_THAT(Decode(PFNC::YUV422_8, 2, 1, {128, 128, 128, 255}).samples,
                ElementsAre(255, 37, 128, 255, 37, 128));
    EXPECT_THAT(Decode(PFNC::YUV422_8_UYVY, 2, 1, {128, 128, 255, 128}).samples,
                ElementsAre(255, 37, 128, 255, 37, 128));
    EXPECT_THAT(Decode(PFNC::YCbCr422_8, 2, 1, {128, 255, 128, 128}).samples,
                ElementsAre(128, 84, 255, 128, 84, 255));
    EXPECT_THAT(Decode(PFNC::YUV8_UYV, 1, 1, {128, 128, 255}).samples, ElementsAre(255, 37, 128));
}

TEST(DecodeYuv, EachPixelHasItsOwnLuma) {
    EXPECT_THAT(Decode(PFNC::YUV422_8, 4, 1, {0, 128, 255, 128, 10, 128, 20, 128}).samples,
                ElementsAre(0, 0, 0, 255, 255, 255, 10, 10, 10, 20, 20, 20));
    EXPECT_THAT(FailureOf(PFNC::YUV422_8, 3, 1, Bytes(6)), HasSubstr("even width"));
}

// Y 512, U 512, Y 1023, V 512 in ten bits each: gray 512 and white. 512 is 32800 of 65535.
TEST(DecodeYuv, DeeperFormats) {
    EXPECT_THAT(Decode(PFNC::YCbCr422_10p, 2, 1, {0x00, 0x02, 0xF8, 0x3F, 0x80}).samples,
                ElementsAre(32800, 32800, 32800, 65535, 65535, 65535));
    EXPECT_THAT(Decode(PFNC::YCbCr8, 1, 1, {128, 128, 255}).samples, ElementsAre(255, 37, 128));
}

// In the limited range 16 is black and 235 is white.
TEST(DecodeYuv, LimitedRange) {
    EXPECT_THAT(Decode(PFNC::YCbCr601_422_8, 2, 1, {16, 128, 235, 128}).samples,
                ElementsAre(0, 0, 0, 255, 255, 255));
}

TEST(Decode, RefusesWhatItCannotDecode) {
    EXPECT_THAT(FailureOf(PFNC::Coord3D_ABC32f, 1, 1, Bytes(12)), HasSubstr("0x026000C0"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 0, 4, {}), HasSubstr("no pixels"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 3, 2, Bytes(5)), HasSubstr("5 bytes, the image needs 6"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 3, 2, Bytes(6), 1), HasSubstr("needs 7"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, ~size_t{0}, ~size_t{0}, Bytes(6)), HasSubstr("claims"));
}

// Every format in the smallest image it can have, in memory of exactly that size: with the address
// sanitizer this shows that no decoder reads past the end.
TEST(Decode, ReadsNothingPastTheEnd) {
    size_t known = 0;
    for (uint32_t bits = 1; bits <= 64; ++bits) {
        for (uint32_t number = 0; number < 0x200; ++number) {
            for (uint32_t mark : {0x01000000U, 0x02000000U}) {
                const uint32_t value = mark | bits << 16 | number;
                const auto* format = Imaging::FindPixelFormat(value);
                if (format == nullptr) continue;
                ++known;
                const size_t width = format->IsYuv() ? 4 : 3;
                const Bytes white(Imaging::LineBytes(value, width) * 3, 0xFF);
                const auto picture = Decode(value, width, 3, white);
                EXPECT_EQ(picture.samples.size(), width * 3 * picture.channels) << format->name;
                if (format->IsYuv()) continue;
                EXPECT_EQ(picture.samples.front(), (1U << picture.depth) - 1) << format->name;
                EXPECT_EQ(picture.samples.back(), (1U << picture.depth) - 1) << format->name;
            }
        }
    }
    EXPECT_GE(known, 80U);
}

}  // namespace
