// Encoding of files.

#include <gmock/gmock.h>

#include "tests/tools/pngfile.h"
#include "tools/imaging/pixelformat.h"
#include "tools/imaging/png.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TEST(EncodePng, GrayAndColourInBothDepths) {
    const PngFile gray = ReadPng(Imaging::EncodePng({3, 1, 1, 8, {0, 100, 255}}));
    EXPECT_EQ(gray.depth, 8U);
    EXPECT_THAT(gray.samples, ElementsAre(0, 100, 255));

    const PngFile deep = ReadPng(Imaging::EncodePng({1, 2, 1, 16, {0x1234, 0xFFFE}}));
    EXPECT_EQ(deep.depth, 16U);
    EXPECT_EQ(deep.height, 2U);
    EXPECT_THAT(deep.samples, ElementsAre(0x1234, 0xFFFE));

    const PngFile colour = ReadPng(Imaging::EncodePng({2, 1, 3, 8, {1, 2, 3, 4, 5, 6}}));
    EXPECT_EQ(colour.channels, 3U);
    EXPECT_THAT(colour.Pixel(1, 0), ElementsAre(4, 5, 6));

    const PngFile deepColour = ReadPng(Imaging::EncodePng({1, 1, 3, 16, {0x102, 0x304, 0xFFFF}}));
    EXPECT_THAT(deepColour.samples, ElementsAre(0x102, 0x304, 0xFFFF));
}

TEST(EncodePng, ReportsWhatTheEncoderRefuses) {
    try {
        Imaging::EncodePng({0, 0, 1, 8, {}});
        FAIL() << "an empty picture was encoded";
    } catch (const Imaging::Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("PNG"));
    }
}

}  // namespace
