// Encoding of files.

#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/tools/picturereader.h"
#include "tools/imaging/encode.h"
#include "tools/imaging/pixelformat.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TEST(EncodePng, GrayAndColourInBothDepths) {
    const PictureFile gray = ReadPng(Imaging::EncodePng({3, 1, 1, 8, {0, 100, 255}}));
    EXPECT_EQ(gray.depth, 8U);
    EXPECT_THAT(gray.samples, ElementsAre(0, 100, 255));

    const PictureFile deep = ReadPng(Imaging::EncodePng({1, 2, 1, 16, {0x1234, 0xFFFE}}));
    EXPECT_EQ(deep.depth, 16U);
    EXPECT_EQ(deep.height, 2U);
    EXPECT_THAT(deep.samples, ElementsAre(0x1234, 0xFFFE));

    const PictureFile colour = ReadPng(Imaging::EncodePng({2, 1, 3, 8, {1, 2, 3, 4, 5, 6}}));
    EXPECT_EQ(colour.channels, 3U);
    EXPECT_THAT(colour.Pixel(1, 0), ElementsAre(4, 5, 6));

    const PictureFile deepColour =
        ReadPng(Imaging::EncodePng({1, 1, 3, 16, {0x102, 0x304, 0xFFFF}}));
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

class PictureFileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        file_ = ::testing::TempDir() + "zelcam-XXXXXX";
        const int descriptor = mkstemp(file_.data());
        ASSERT_GE(descriptor, 0);
        close(descriptor);
    }
    void TearDown() override { unlink(file_.c_str()); }

    const std::string& Store(const std::vector<uint8_t>& bytes) const {
        std::ofstream out(file_, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        return file_;
    }

    std::string file_;
};

// A picture of odd size, with more than one strip.
TEST_F(PictureFileTest, TiffKeepsEverySample) {
    for (const size_t channels : {size_t{1}, size_t{3}}) {
        for (const uint32_t depth : {8U, 16U}) {
            Imaging::Picture picture{1021, 77, channels, depth, {}};
            for (size_t i = 0; i < size_t{1021} * 77 * channels; ++i)
                picture.samples.push_back(static_cast<uint16_t>(i * 40503 >> (16 - depth)) &
                                          (depth == 8 ? 0xFF : 0xFFFF));
            const PictureFile file = ReadTiffFile(Store(Imaging::EncodeTiff(picture)));
            EXPECT_EQ(file.width, 1021U);
            EXPECT_EQ(file.channels, channels);
            EXPECT_EQ(file.depth, depth);
            EXPECT_EQ(file.samples, picture.samples) << channels << " of " << depth;
        }
    }
    EXPECT_THROW(Imaging::EncodeTiff({0, 0, 1, 8, {}}), Imaging::Error);
}

TEST_F(PictureFileTest, JpegLooksLikeThePicture) {
    for (const uint32_t depth : {8U, 16U}) {
        Imaging::Picture picture{64, 48, 3, depth, {}};
        for (size_t i = 0; i < size_t{64} * 48; ++i) {
            for (const int value : {200, 100, 50})
                picture.samples.push_back(static_cast<uint16_t>(depth == 8 ? value : value * 257));
        }
        const PictureFile file = ReadJpegFile(Store(Imaging::EncodeJpeg(picture)));
        ASSERT_EQ(file.samples.size(), picture.samples.size());
        for (size_t i = 0; i < file.samples.size(); ++i)
            EXPECT_NEAR(file.samples[i], i % 3 == 0 ? 200 : i % 3 == 1 ? 100 : 50, 2) << i;
    }
    const PictureFile gray = ReadJpegFile(Store(Imaging::EncodeJpeg({1, 1, 1, 8, {77}})));
    EXPECT_EQ(gray.channels, 1U);
    EXPECT_NEAR(gray.samples.at(0), 77, 1);
    EXPECT_THROW(Imaging::EncodeJpeg({0, 0, 1, 8, {}}), Imaging::Error);
    EXPECT_THROW(Imaging::EncodeJpeg({70000, 1, 1, 8, std::vector<uint16_t>(70000)}),
                 Imaging::Error);
}

}  // namespace
