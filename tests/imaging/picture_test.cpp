// Pictures from literal bytes. The expected values were worked out by hand from the definitions of
// the formats.

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "ZelImage/ZelImage.h"
#include "gentl/PFNC.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace PFNC = GenICam_3_0::PFNC;

namespace {

using Bytes = std::vector<uint8_t>;

struct Picture {
    size_t channels = 0;
    uint32_t depth = 0;
    std::vector<uint16_t> samples;
};

ZelImage::View ViewOf(uint64_t format, size_t width, size_t height, const Bytes& bytes,
                      size_t padding = 0) {
    return {bytes.data(), bytes.size(),
            format,       width,
            height,       padding == 0 ? 0 : ZelImage::LineBytes(format, width) + padding};
}

// The samples of a picture, which has no padding, from memory of just its size.
std::vector<uint16_t> ConvertTo(uint64_t target, const ZelImage::View& view,
                                const ZelImage::ConvertOptions* options = nullptr) {
    Bytes bytes(ZelImage::ConvertedSize(view, target, 0));
    EXPECT_EQ(ZelImage::Convert(view, target, options, bytes.data(), bytes.size(), 0),
              ZelCamErr_Success)
        << ZelImage::LastReason();
    const bool isWide = target == PFNC::Mono16 || target == PFNC::RGB16 || target == PFNC::BGR16;
    if (!isWide) return {bytes.begin(), bytes.end()};
    std::vector<uint16_t> samples(bytes.size() / 2);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    return samples;
}

// The picture of the format's own depth.
Picture Decode(uint64_t format, size_t width, size_t height, const Bytes& bytes, size_t padding = 0,
               const ZelImage::ConvertOptions* options = nullptr) {
    ZelImage::FormatInfo info{};
    EXPECT_TRUE(ZelImage::DescribeFormat(format, &info, sizeof info));
    const bool isGray = info.pictureFormat == PFNC::Mono8 || info.pictureFormat == PFNC::Mono16;
    const bool isWide = info.pictureFormat == PFNC::Mono16 || info.pictureFormat == PFNC::RGB16;
    return {isGray ? size_t{1} : size_t{3}, isWide ? 16U : 8U,
            ConvertTo(info.pictureFormat, ViewOf(format, width, height, bytes, padding), options)};
}

// Why there is no picture; the memory for it stays as it is.
std::string FailureOf(uint64_t format, size_t width, size_t height, const Bytes& bytes,
                      size_t padding = 0) {
    Bytes target(64, 0xA5);
    const auto error = ZelImage::Convert(ViewOf(format, width, height, bytes, padding), PFNC::RGB8,
                                         nullptr, target.data(), target.size(), 0);
    EXPECT_EQ(error, ZelCamErr_InvalidArgument);
    EXPECT_EQ(target, Bytes(64, 0xA5));
    return ZelImage::LastReason();
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

// Red, green and blue of one pixel by the definitions of the ITU, in ten bits; the weights follow
// from those of red and blue.
TEST(DecodeYuv, MatricesAndRangesFollowTheRecommendations) {
    const struct {
        uint64_t format;
        double red, blue;
    } matrices[] = {{PFNC::YCbCr601_10_CbYCr, 0.299, 0.114},
                    {PFNC::YCbCr709_10_CbYCr, 0.2126, 0.0722},
                    {PFNC::YCbCr2020_10_CbYCr, 0.2627, 0.0593}};
    for (const auto& matrix : matrices) {
        const int cb = 600, y = 500, cr = 450;
        const Bytes pixel = {cb & 0xFF, cb >> 8, y & 0xFF, y >> 8, cr & 0xFF, cr >> 8};
        const double luma = (y - 64) / 876.0;
        const double blue = luma + 2 * (1 - matrix.blue) * (cb - 512) / 896.0;
        const double red = luma + 2 * (1 - matrix.red) * (cr - 512) / 896.0;
        const double green =
            (luma - matrix.red * red - matrix.blue * blue) / (1 - matrix.red - matrix.blue);
        const auto picture = Decode(matrix.format, 1, 1, pixel);
        EXPECT_NEAR(picture.samples.at(0), 65535 * red, 1) << matrix.format;
        EXPECT_NEAR(picture.samples.at(1), 65535 * green, 1) << matrix.format;
        EXPECT_NEAR(picture.samples.at(2), 65535 * blue, 1) << matrix.format;
    }
}

// The same bytes as another matrix and range say: 2 (1 - 0.2126) = 1.5748.
TEST(DecodeYuv, OptionsOverrideTheFormat) {
    ZelImage::ConvertOptions options;
    options.matrix = ZelImage::YuvMatrix::Bt709;
    EXPECT_THAT(Decode(PFNC::YCbCr8, 1, 1, {100, 128, 138}, 0, &options).samples,
                ElementsAre(116, 95, 100));  // 100 + 15.7, 100 - 4.7
    options = {};
    options.range = ZelImage::YuvRange::Limited;
    EXPECT_THAT(Decode(PFNC::YCbCr8, 1, 1, {235, 128, 128}, 0, &options).samples,
                ElementsAre(255, 255, 255));
    options.range = static_cast<ZelImage::YuvRange>(7);
    uint8_t rgb[3];
    const Bytes pixel = {1, 2, 3};
    EXPECT_EQ(ZelImage::Convert(ViewOf(PFNC::YCbCr8, 1, 1, pixel), PFNC::RGB8, &options, rgb, 3, 0),
              ZelCamErr_InvalidArgument);
}

// A red, a green, a blue and a white pixel: the chroma of pairs and fours, in every order.
TEST(DecodeYuv, PixelsThatShareChroma) {
    const auto grays = ElementsAre(1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4);
    EXPECT_THAT(Decode(PFNC::YCbCr411_8, 4, 1, {1, 2, 128, 3, 4, 128}).samples, grays);
    EXPECT_THAT(Decode(PFNC::YUV411_8_UYYVYY, 4, 1, {128, 1, 2, 128, 3, 4}).samples, grays);
    EXPECT_THAT(FailureOf(PFNC::YCbCr411_8, 6, 1, Bytes(12)), HasSubstr("multiple of 4"));
    // Cr 255 and Cb 128, as above: 255, 37, 128.
    const auto reds = ElementsAre(255, 37, 128, 255, 37, 128, 255, 37, 128, 255, 37, 128);
    EXPECT_THAT(Decode(PFNC::YCbCr411_8, 4, 1, {128, 128, 128, 128, 128, 255}).samples, reds);
    EXPECT_THAT(
        Decode(PFNC::YCbCr420_8_YY_CbCr_Semiplanar, 2, 2, {128, 128, 128, 128, 128, 255}).samples,
        reds);
    EXPECT_THAT(
        Decode(PFNC::YCbCr420_8_YY_CrCb_Semiplanar, 2, 2, {128, 128, 128, 128, 255, 128}).samples,
        reds);
    EXPECT_THAT(
        Decode(PFNC::YCbCr422_8_YY_CrCb_Semiplanar, 2, 2, {128, 128, 128, 128, 255, 128, 255, 128})
            .samples,
        reds);
    EXPECT_THAT(FailureOf(PFNC::YCbCr420_8_YY_CbCr_Semiplanar, 2, 1, Bytes(9)),
                HasSubstr("even height"));
}

TEST(DecodeRgb, PlanesAndPixelWords) {
    // With a pitch of three bytes, in red, green and blue.
    EXPECT_THAT(Decode(PFNC::RGB8_Planar, 2, 1, {1, 2, 99, 3, 4, 99, 5, 6}, 1).samples,
                ElementsAre(1, 3, 5, 2, 4, 6));
    EXPECT_THAT(Decode(PFNC::RGB10p32, 1, 1, {0x01, 0x08, 0xF0, 0xFF}).samples,
                ElementsAre(64, 128, 65535));
    // 31 of 31, 21 of 63, 0 of 31.
    EXPECT_THAT(Decode(PFNC::RGB565p, 1, 1, {0xBF, 0x02}).samples, ElementsAre(255, 85, 0));
    EXPECT_THAT(Decode(PFNC::BGR565p, 1, 1, {0xBF, 0x02}).samples, ElementsAre(0, 85, 255));
}

TEST(DecodeBiColour, TwoPixelsShareRedAndBlue) {
    EXPECT_THAT(Decode(PFNC::BiColorRGBG8, 3, 1, {1, 2, 3, 4, 5, 6}).samples,
                ElementsAre(1, 2, 3, 1, 4, 3, 5, 6, 3));
    EXPECT_THAT(Decode(PFNC::BiColorBGRG8, 2, 1, {1, 2, 3, 4}).samples,
                ElementsAre(3, 2, 1, 3, 4, 1));
}

TEST(DecodeMono, SignedDeepAndSparse) {
    EXPECT_THAT(Decode(PFNC::Mono8s, 3, 1, {0x80, 0, 0x7F}).samples, ElementsAre(0, 128, 255));
    EXPECT_THAT(Decode(PFNC::Mono32, 2, 1, {0, 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 0xFF}).samples,
                ElementsAre(32768, 65535));
    EXPECT_THAT(Decode(PFNC::Confidence1, 3, 1, {0, 1, 2}).samples, ElementsAre(0, 255, 255));
    EXPECT_THAT(Decode(PFNC::Coord3D_C16, 1, 1, {0x34, 0x12}).samples, ElementsAre(0x1234));
    // White at both ends of the diagonals; the others are means of two to four of them.
    EXPECT_THAT(Decode(PFNC::SCF1WBWG8, 3, 3, {10, 0, 20, 0, 30, 0, 40, 0, 51}).samples,
                ElementsAre(10, 20, 20, 27, 30, 34, 40, 40, 51));
}

// Every target, of one colour with a deeper format: 1023, 341 and 0 of ten bits.
TEST(Targets, AllOfThem) {
    const Bytes pixel = {0xFF, 0x03, 0x55, 0x01, 0, 0};
    const auto view = ViewOf(PFNC::RGB10, 1, 1, pixel);
    EXPECT_THAT(ConvertTo(PFNC::RGB8, view), ElementsAre(255, 85, 0));
    EXPECT_THAT(ConvertTo(PFNC::BGR8, view), ElementsAre(0, 85, 255));
    EXPECT_THAT(ConvertTo(PFNC::RGBa8, view), ElementsAre(255, 85, 0, 255));
    EXPECT_THAT(ConvertTo(PFNC::BGRa8, view), ElementsAre(0, 85, 255, 255));
    EXPECT_THAT(ConvertTo(PFNC::RGB16, view), ElementsAre(65535, 21845, 0));
    EXPECT_THAT(ConvertTo(PFNC::BGR16, view), ElementsAre(0, 21845, 65535));
    // 0.299 * 255 + 0.587 * 85 = 126.14, and 257 times as much.
    EXPECT_THAT(ConvertTo(PFNC::Mono8, view), ElementsAre(126));
    EXPECT_THAT(ConvertTo(PFNC::Mono16, view), ElementsAre(32418));
    const Bytes gray = {7, 9};
    EXPECT_THAT(ConvertTo(PFNC::BGR8, ViewOf(PFNC::Mono8, 2, 1, gray)),
                ElementsAre(7, 7, 7, 9, 9, 9));
    EXPECT_THAT(ConvertTo(PFNC::Mono16, ViewOf(PFNC::Mono8, 2, 1, gray)), ElementsAre(1799, 2313));
    const Bytes alpha = {1, 2, 3, 4};
    EXPECT_THAT(ConvertTo(PFNC::BGRa8, ViewOf(PFNC::RGBa8, 1, 1, alpha)), ElementsAre(3, 2, 1, 4));
    // Luma of YUV is taken as it is, not computed from clamped colours.
    const Bytes vivid = {100, 0, 255};
    EXPECT_THAT(ConvertTo(PFNC::Mono8, ViewOf(PFNC::YCbCr8, 1, 1, vivid)), ElementsAre(100));
}

// Lines of many widths, in each phase and depth: the vectors of the inside, what remains of them,
// and the borders give what the same pixel gives in a small image.
TEST(DecodeBayer, WideLinesAreLikeNarrowOnes) {
    constexpr size_t kHeight = 4;
    for (const uint64_t format :
         {PFNC::BayerRG8, PFNC::BayerGR8, PFNC::BayerGB16, PFNC::BayerBG16}) {
        const size_t bytes = format == PFNC::BayerRG8 || format == PFNC::BayerGR8 ? 1 : 2;
        for (size_t width = 6; width < 44; ++width) {
            Bytes image(width * kHeight * bytes);
            for (size_t i = 0; i < image.size(); ++i)
                image[i] = static_cast<uint8_t>(i * i * 37 % 251);
            const auto wide = Decode(format, width, kHeight, image).samples;
            // Four columns that begin with an even one.
            for (size_t left = 0; left + 4 <= width; left += 2) {
                Bytes part;
                for (size_t y = 0; y < kHeight; ++y) {
                    const auto line =
                        image.begin() + static_cast<ptrdiff_t>((y * width + left) * bytes);
                    part.insert(part.end(), line, line + static_cast<ptrdiff_t>(4 * bytes));
                }
                const auto narrow = Decode(format, 4, kHeight, part).samples;
                for (size_t i = 0; i < kHeight * 6; ++i) {
                    const size_t x = 1 + i / 3 % 2, y = i / 6;
                    ASSERT_EQ(wide[(y * width + left + x) * 3 + i % 3],
                              narrow[(y * 4 + x) * 3 + i % 3])
                        << format << ' ' << width << " at " << left + x << ", " << y;
                }
            }
        }
    }
}

// Both interpolations give back an image of one colour. At a vertical edge of gray, the edge-aware
// one has no colour, where the bilinear one does.
TEST(DecodeBayer, EdgeAwareKeepsEdgesOfGray) {
    ZelImage::ConvertOptions options;
    options.demosaic = ZelImage::Demosaic::EdgeAware;
    constexpr size_t kWidth = 9;
    constexpr size_t kHeight = 6;
    for (const uint64_t format : {PFNC::BayerRG8, PFNC::BayerGR8, PFNC::BayerGB8, PFNC::BayerBG8}) {
        Bytes edge;
        for (size_t i = 0; i < kWidth * kHeight; ++i)
            edge.push_back(i % kWidth < 4 ? 20 : 220);
        const auto sharp = Decode(format, kWidth, kHeight, edge, 0, &options).samples;
        for (size_t i = 0; i < sharp.size(); ++i)
            EXPECT_EQ(sharp[i], edge[i / 3]) << format << " at " << i;
        EXPECT_NE(Decode(format, kWidth, kHeight, edge).samples, sharp);
    }
    // R 1000, G 2000, B 3000 of 4095, in the smallest mosaic.
    const Bytes flat = {0xE8, 0x03, 0xD0, 0x07, 0xD0, 0x07, 0xB8, 0x0B};
    const auto picture = Decode(PFNC::BayerRG12, 2, 2, flat, 0, &options);
    const uint16_t expected[] = {16004, 32007, 48011};  // 1000 * 65535 / 4095 and so on
    for (size_t i = 0; i < 12; ++i)
        EXPECT_EQ(picture.samples[i], expected[i % 3]) << i;
}

// Green at the middle: across, the change is |40 - 44| + |2 * 50 - 46 - 46| = 12, down it is
// larger. (40 + 44) / 2 + 8 / 4 = 44. At the pixel of 46 to the right, green is 0, from above and
// below. So red between the two is 44 plus the mean of 50 - 44 and 46 - 0.
TEST(DecodeBayer, EdgeAwareFollowsItsDefinition) {
    ZelImage::ConvertOptions options;
    options.demosaic = ZelImage::Demosaic::EdgeAware;
    const Bytes mosaic = {46, 0,  10, 0,  46,  //
                          0,  0,  90, 0,  0,   //
                          46, 40, 50, 44, 46,  //
                          0,  0,  10, 0,  0,   //
                          46, 0,  90, 0,  46};
    const auto picture = Decode(PFNC::BayerRG8, 5, 5, mosaic, 0, &options);
    const auto* const middle = &picture.samples[size_t{12} * 3];
    EXPECT_EQ(middle[0], 50);
    EXPECT_EQ(middle[1], 44);
    EXPECT_EQ(middle[3], 70);
}

TEST(Decode, RefusesWhatItCannotDecode) {
    EXPECT_THAT(FailureOf(0x01080FFF, 1, 1, Bytes(12)), HasSubstr("0x01080FFF is not known"));
    EXPECT_THAT(FailureOf(PFNC::Coord3D_ABC32f, 1, 1, Bytes(12)),
                HasSubstr("Coord3D_ABC32f is not a picture"));
    EXPECT_THAT(FailureOf(PFNC::RGB12V1Packed, 2, 1, Bytes(9)), HasSubstr("cannot be unpacked"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 0, 4, {0}), HasSubstr("no pixels"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 3, 2, Bytes(5)), HasSubstr("5 bytes, the image needs 6"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 3, 2, Bytes(6), 1), HasSubstr("needs 7"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, ~size_t{0}, ~size_t{0}, Bytes(6)), HasSubstr("claims"));
    EXPECT_THAT(FailureOf(PFNC::Mono8, 5, 5, Bytes(25)),
                HasSubstr("64 bytes, the result needs 75"));
    EXPECT_THAT(FailureOf(PFNC::BayerRG8, 4, 1, {1, 2, 3, 4}), HasSubstr("2 by 2"));
    uint8_t byte = 0;
    const Bytes image(6);
    const auto view = ViewOf(PFNC::Mono8, 3, 2, image);
    EXPECT_EQ(ZelImage::Convert(view, PFNC::YCbCr8, nullptr, &byte, 1, 0),
              ZelCamErr_InvalidArgument);
    EXPECT_THAT(ZelImage::LastReason(), HasSubstr("Mono8 is not converted to YCbCr8"));
    EXPECT_EQ(ZelImage::Convert(view, PFNC::RGB8, nullptr, &byte, 1, 8), ZelCamErr_InvalidArgument);
    EXPECT_THAT(ZelImage::LastReason(), HasSubstr("a line needs 9"));
    EXPECT_EQ(ZelImage::ConvertedSize(view, PFNC::RGB8, 12), 12U + 9U);
}

// Every format to every target, in memory of exactly the size on both sides: with the address
// sanitizer this shows that nothing is read or written beyond. Lines with a pitch keep what is
// between them; words may begin at an odd address.
TEST(Decode, StaysInsideOfItsMemory) {
    const uint64_t targets[] = {PFNC::Mono8, PFNC::Mono16, PFNC::RGB8,  PFNC::BGR8,
                                PFNC::RGB16, PFNC::BGR16,  PFNC::RGBa8, PFNC::BGRa8};
    size_t pictures = 0;
    for (size_t i = 0; const uint64_t value = ZelImage::FormatAt(i); ++i) {
        ZelImage::FormatInfo info{};
        ASSERT_TRUE(ZelImage::DescribeFormat(value, &info, sizeof info));
        if (info.pictureFormat == 0) continue;
        ++pictures;
        const bool isYuv = info.kind == ZelImage::FormatKind::Yuv;
        for (const size_t width : {isYuv ? 4U : 3U, isYuv ? 36U : 37U}) {
            const size_t height = isYuv ? 4 : 3;
            ZelImage::View view{nullptr, 0, value, width, height, 0};
            const Bytes white(ZelImage::ImageSize(view), 0xFF);
            view.data = white.data();
            view.size = white.size();
            for (const uint64_t target : targets) {
                const size_t line = ZelImage::LineBytes(target, width);
                const size_t size = ZelImage::ConvertedSize(view, target, line + 3);
                ASSERT_EQ(size, (line + 3) * (height - 1) + line) << info.name;
                const auto memory = std::make_unique<uint8_t[]>(size + 1);
                std::memset(memory.get(), 0xA5, size + 1);
                uint8_t* const to = memory.get() + 1;
                ASSERT_EQ(ZelImage::Convert(view, target, nullptr, to, size, line + 3),
                          ZelCamErr_Success)
                    << info.name << ": " << ZelImage::LastReason();
                for (size_t y = 0; y + 1 < height; ++y)
                    for (size_t gap = 0; gap < 3; ++gap)
                        ASSERT_EQ(to[y * (line + 3) + line + gap], 0xA5) << info.name;
                if (isYuv || info.componentType == ZelImage::ComponentType::Signed) continue;
                ASSERT_EQ(to[0], 0xFF) << info.name;
                ASSERT_EQ(to[size - 1], 0xFF) << info.name;
            }
        }
    }
    EXPECT_EQ(pictures, 240U);
}

}  // namespace
