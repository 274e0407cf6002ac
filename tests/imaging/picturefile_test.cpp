// Picture files.

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "ZelImage/ZelImage.h"
#include "gentl/PFNC.h"
#include "tests/support/picturereader.h"
#include "tests/support/temporaryfolder.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace PFNC = GenICam_3_0::PFNC;

namespace {

using Bytes = std::vector<uint8_t>;

// Samples of 16 bits as bytes.
Bytes Words(const std::vector<uint16_t>& samples) {
    Bytes bytes(samples.size() * 2);
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

ZelImage::View ImageOf(uint64_t format, size_t width, size_t height, const Bytes& bytes) {
    return {bytes.data(), bytes.size(), format, width, height, 0};
}

Bytes Encode(const ZelImage::View& view, ZelImage::FileType type) {
    Bytes file;
    const auto append = [](void* to, const void* data, size_t size) {
        auto& all = *static_cast<Bytes*>(to);
        all.insert(all.end(), static_cast<const uint8_t*>(data),
                   static_cast<const uint8_t*>(data) + size);
        return true;
    };
    EXPECT_EQ(ZelImage::Encode(view, type, nullptr, append, &file), ZelCamErr_Success)
        << ZelImage::LastReason();
    return file;
}

TEST(EncodePng, GrayAndColourInBothDepths) {
    const Bytes grayBytes = {0, 100, 255};
    const PictureFile gray =
        ReadPng(Encode(ImageOf(PFNC::Mono8, 3, 1, grayBytes), ZelImage::FileType::Png));
    EXPECT_EQ(gray.depth, 8U);
    EXPECT_THAT(gray.samples, ElementsAre(0, 100, 255));

    const Bytes deepBytes = Words({0x1234, 0xFFFE});
    const PictureFile deep =
        ReadPng(Encode(ImageOf(PFNC::Mono16, 1, 2, deepBytes), ZelImage::FileType::Png));
    EXPECT_EQ(deep.depth, 16U);
    EXPECT_EQ(deep.height, 2U);
    EXPECT_THAT(deep.samples, ElementsAre(0x1234, 0xFFFE));

    const Bytes colourBytes = {3, 2, 1, 6, 5, 4};
    const PictureFile colour =
        ReadPng(Encode(ImageOf(PFNC::BGR8, 2, 1, colourBytes), ZelImage::FileType::Png));
    EXPECT_EQ(colour.channels, 3U);
    EXPECT_THAT(colour.Pixel(1, 0), ElementsAre(4, 5, 6));

    const Bytes deepColourBytes = Words({0x102, 0x304, 0xFFFF});
    const PictureFile deepColour =
        ReadPng(Encode(ImageOf(PFNC::RGB16, 1, 1, deepColourBytes), ZelImage::FileType::Png));
    EXPECT_THAT(deepColour.samples, ElementsAre(0x102, 0x304, 0xFFFF));
}

class PictureFileTest : public ::testing::Test {
  protected:
    std::string Save(const ZelImage::View& view, const std::string& name,
                     const ZelImage::SaveOptions* options = nullptr) {
        std::string file = folder_.Path() / name;
        EXPECT_EQ(ZelImage::Save(view, file.c_str(), options), ZelCamErr_Success)
            << ZelImage::LastReason();
        return file;
    }

    std::string FailureOf(const ZelImage::View& view, const std::string& name, ZelCamErr error) {
        const std::string file = folder_.Path() / name;
        EXPECT_EQ(ZelImage::Save(view, file.c_str(), nullptr), error);
        EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
        return ZelImage::LastReason();
    }

    ZelTest::TemporaryFolder folder_;
};

// A picture of odd size, with more than one strip.
TEST_F(PictureFileTest, TiffKeepsEverySample) {
    for (const uint64_t format : {PFNC::Mono8, PFNC::Mono16, PFNC::RGB8, PFNC::RGB16}) {
        const size_t channels = format == PFNC::Mono8 || format == PFNC::Mono16 ? 1 : 3;
        const uint32_t depth = format == PFNC::Mono8 || format == PFNC::RGB8 ? 8 : 16;
        std::vector<uint16_t> samples;
        for (size_t i = 0; i < size_t{1021} * 77 * channels; ++i)
            samples.push_back(static_cast<uint16_t>(i * 40503 >> (16 - depth)) &
                              (depth == 8 ? 0xFF : 0xFFFF));
        const Bytes bytes = depth == 16 ? Words(samples) : Bytes(samples.begin(), samples.end());
        const PictureFile file = ReadTiffFile(Save(ImageOf(format, 1021, 77, bytes), "a.tif"));
        EXPECT_EQ(file.width, 1021U);
        EXPECT_EQ(file.channels, channels);
        EXPECT_EQ(file.depth, depth);
        EXPECT_EQ(file.samples, samples) << format;
    }
}

TEST_F(PictureFileTest, JpegLooksLikeThePicture) {
    for (const bool isDeep : {false, true}) {
        std::vector<uint16_t> samples;
        for (size_t i = 0; i < size_t{64} * 48; ++i) {
            for (const int value : {200, 100, 50})
                samples.push_back(static_cast<uint16_t>(isDeep ? value * 257 : value));
        }
        const Bytes bytes = isDeep ? Words(samples) : Bytes(samples.begin(), samples.end());
        const auto view = ImageOf(isDeep ? PFNC::RGB16 : PFNC::RGB8, 64, 48, bytes);
        const PictureFile file = ReadJpegFile(Save(view, "a.JPG"));
        ASSERT_EQ(file.samples.size(), samples.size());
        for (size_t i = 0; i < file.samples.size(); ++i)
            EXPECT_NEAR(file.samples[i], i % 3 == 0 ? 200 : i % 3 == 1 ? 100 : 50, 2) << i;
    }
    const Bytes pixel = {77};
    const PictureFile gray = ReadJpegFile(Save(ImageOf(PFNC::Mono8, 1, 1, pixel), "b.jpeg"));
    EXPECT_EQ(gray.channels, 1U);
    EXPECT_NEAR(gray.samples.at(0), 77, 1);

    Bytes noise(size_t{64} * 64);
    for (size_t i = 0; i < noise.size(); ++i)
        noise[i] = static_cast<uint8_t>(i * i % 251);
    ZelImage::SaveOptions options;
    options.jpegQuality = 20;
    const auto view = ImageOf(PFNC::Mono8, 64, 64, noise);
    EXPECT_LT(std::filesystem::file_size(Save(view, "bad.jpg", &options)),
              std::filesystem::file_size(Save(view, "good.jpg")));
}

// The bytes of the image, without what lies behind it.
TEST_F(PictureFileTest, RawIsTheImageAsItIs) {
    const Bytes bytes = {1, 2, 99, 3, 4, 99, 99};
    ZelImage::View view = ImageOf(PFNC::Mono8, 2, 2, bytes);
    view.linePitch = 3;
    std::ifstream file(Save(view, "a.raw"), std::ios::binary);
    EXPECT_THAT(Bytes(std::istreambuf_iterator<char>(file), {}), ElementsAre(1, 2, 99, 3, 4));
}

TEST_F(PictureFileTest, WhatCannotBeSavedLeavesNoFile) {
    const Bytes bytes(70000);
    const auto view = ImageOf(PFNC::Mono8, 3, 2, bytes);
    EXPECT_THAT(FailureOf(view, "a.bmp", ZelCamErr_InvalidArgument), HasSubstr(".png, .tif"));
    EXPECT_THAT(FailureOf(view, "png", ZelCamErr_InvalidArgument), HasSubstr("does not end"));
    EXPECT_THAT(FailureOf(view, "no/a.png", ZelCamErr_FileOpenFailed),
                HasSubstr("a.png cannot be written: No such file or directory"));
    EXPECT_THAT(FailureOf(ImageOf(PFNC::Mono8, 0, 0, bytes), "a.png", ZelCamErr_InvalidArgument),
                HasSubstr("no pixels"));
    EXPECT_THAT(
        FailureOf(ImageOf(PFNC::Mono8, 70000, 1, bytes), "a.jpg", ZelCamErr_InvalidArgument),
        HasSubstr("JPEG: "));
    EXPECT_THAT(FailureOf(ImageOf(PFNC::Data8, 3, 2, bytes), "a.tiff", ZelCamErr_InvalidArgument),
                HasSubstr("Data8 is not a picture"));
    EXPECT_EQ(ZelImage::Encode(
                  view, ZelImage::FileType::Png, nullptr,
                  [](void*, const void*, size_t) { return false; }, nullptr),
              ZelCamErr_FileOpenFailed);
}

}  // namespace
