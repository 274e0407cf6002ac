// The table of formats.

#include <cctype>
#include <cstring>
#include <iterator>
#include <string>

#include <gmock/gmock.h>

#include "ZelImage/ZelImage.h"
#include "gentl/PFNC.h"

namespace PFNC = GenICam_3_0::PFNC;
using ZelImage::FormatInfo;
using ZelImage::FormatKind;
using ZelImage::Packing;

namespace {

FormatInfo InfoOf(uint64_t format) {
    FormatInfo info{};
    EXPECT_TRUE(ZelImage::DescribeFormat(format, &info, sizeof info)) << format;
    return info;
}

// A number and "p", or one of the older words.
bool SaysPacked(const std::string& name) {
    for (size_t i = 1; i < name.size(); ++i)
        if (name[i] == 'p' && std::isdigit(static_cast<unsigned char>(name[i - 1])) != 0)
            return true;
    return name.find("Packed") != std::string::npos ||
           name.find("_Deprecated") != std::string::npos;
}

// What the convention's own rules say of a name: it has the depth of a component, says whether
// these are packed, and whether they are in planes.
TEST(Formats, NamesAgreeWithTheirDescription) {
    const struct {
        uint64_t value;
        const char* name;
    } formats[] = {
#define ROW(name, value) {value, #name},
        PFNC_FOR_EACH_FORMAT(ROW)
#undef ROW
    };
    for (const auto& format : formats) {
        const std::string name = format.name;
        SCOPED_TRACE(name);
        EXPECT_STREQ(ZelImage::FormatName(format.value), format.name);
        EXPECT_EQ(ZelImage::FormatByName(format.name), format.value);
        const FormatInfo info = InfoOf(format.value);
        EXPECT_STREQ(info.name, format.name);
        EXPECT_EQ(info.bitsPerPixel, format.value >> 16 & 0xFF);
        EXPECT_EQ(info.isPlanar, name.find("lanar") != std::string::npos);
        const bool isSquare = name.find("565") != std::string::npos;
        if (!isSquare) {
            EXPECT_NE(name.find(std::to_string(info.significantBits)), std::string::npos);
        }
        EXPECT_EQ(info.packing != Packing::Unpacked, SaysPacked(name));
        if (info.packing == Packing::Unpacked) {
            // Components fill a pixel; where more pixels share them, twelve bits of a pixel remain.
            EXPECT_EQ(info.unpackedFormat, format.value);
            if (info.bitsPerPixel != 12) {
                EXPECT_EQ(info.components * info.componentBytes * 8, info.bitsPerPixel);
            }
        }
        if (info.packing == Packing::LsbFirst) {
            EXPECT_EQ(info.components * info.significantBits, info.bitsPerPixel);
        }
    }
    size_t count = 0;
    while (ZelImage::FormatAt(count) != 0)
        ++count;
    EXPECT_EQ(count, std::size(formats));
}

TEST(Formats, SomeInFull) {
    const FormatInfo bayer = InfoOf(PFNC::BayerRG10Packed);
    EXPECT_EQ(bayer.kind, FormatKind::Bayer);
    EXPECT_EQ(bayer.packing, Packing::GigEVision);
    EXPECT_EQ(bayer.significantBits, 10U);
    EXPECT_EQ(bayer.bitsPerPixel, 12U);
    EXPECT_EQ(bayer.unpackedFormat, uint64_t{PFNC::BayerRG10});
    EXPECT_EQ(bayer.pictureFormat, uint64_t{PFNC::RGB16});

    EXPECT_EQ(InfoOf(PFNC::Mono1p).unpackedFormat, 0U);
    EXPECT_EQ(InfoOf(PFNC::RGB10p32).unpackedFormat, uint64_t{PFNC::RGB10});
    EXPECT_EQ(InfoOf(PFNC::R12_Deprecated).unpackedFormat, uint64_t{PFNC::R12});
    EXPECT_EQ(InfoOf(PFNC::Confidence1p).unpackedFormat, uint64_t{PFNC::Confidence1});
    EXPECT_EQ(InfoOf(PFNC::YCbCr709_422_10p_CbYCrY).unpackedFormat,
              uint64_t{PFNC::YCbCr709_422_10_CbYCrY});
    EXPECT_EQ(InfoOf(PFNC::SCF1WGWR12p).unpackedFormat, uint64_t{PFNC::SCF1WGWR12});
    EXPECT_EQ(InfoOf(PFNC::SCF1WGWR12p).pictureFormat, uint64_t{PFNC::Mono16});
    EXPECT_EQ(InfoOf(PFNC::BGR565p).pictureFormat, uint64_t{PFNC::RGB8});
    EXPECT_EQ(InfoOf(PFNC::Coord3D_C16).pictureFormat, uint64_t{PFNC::Mono16});
    EXPECT_EQ(InfoOf(PFNC::Coord3D_AC16).pictureFormat, 0U);

    const FormatInfo depth = InfoOf(PFNC::Coord3D_ABC32f_Planar);
    EXPECT_EQ(depth.kind, FormatKind::Coordinates);
    EXPECT_EQ(depth.componentType, ZelImage::ComponentType::Float);
    EXPECT_EQ(depth.components, 3U);
    EXPECT_EQ(depth.pictureFormat, 0U);
    EXPECT_EQ(InfoOf(PFNC::Data16s).componentType, ZelImage::ComponentType::Signed);
    EXPECT_EQ(InfoOf(PFNC::RGB12V1Packed).componentBytes, 0U);
}

// A caller of another version has another size.
TEST(Formats, DescriptionsOfOtherSizes) {
    struct Longer {
        FormatInfo info;
        uint64_t more;
    } longer;
    std::memset(static_cast<void*>(&longer), 0xA5, sizeof longer);
    EXPECT_TRUE(ZelImage::DescribeFormat(PFNC::Mono8, &longer.info, sizeof longer));
    EXPECT_STREQ(longer.info.name, "Mono8");
    EXPECT_EQ(longer.more, 0U);

    std::memset(static_cast<void*>(&longer), 0xA5, sizeof longer);
    EXPECT_TRUE(ZelImage::DescribeFormat(PFNC::Mono8, &longer.info, sizeof longer.info.name));
    EXPECT_STREQ(longer.info.name, "Mono8");
    EXPECT_EQ(static_cast<uint32_t>(longer.info.kind), 0xA5A5A5A5);

    EXPECT_FALSE(ZelImage::DescribeFormat(0x01080FFF, &longer.info, sizeof longer.info));
    EXPECT_EQ(longer.info.name, nullptr);
    EXPECT_EQ(ZelImage::FormatName(0x01080FFF), nullptr);
    EXPECT_EQ(ZelImage::FormatByName("Mono9"), 0U);
    EXPECT_EQ(ZelImage::FormatByName(nullptr), 0U);
}

TEST(Formats, SizesOfLinesAndImages) {
    EXPECT_EQ(ZelImage::LineBytes(PFNC::Mono12p, 3), 5U);
    EXPECT_EQ(ZelImage::LineBytes(PFNC::Coord3D_ABC10p_Planar, 3), 4U);
    EXPECT_EQ(ZelImage::LineBytes(PFNC::YCbCr420_8_YY_CbCr_Semiplanar, 6), 6U);
    EXPECT_EQ(ZelImage::LineBytes(0x81180001, 5), 15U);
    EXPECT_EQ(ZelImage::LineBytes(PFNC::Mono8, ~size_t{0}), 0U);
    EXPECT_EQ(ZelImage::ImageSize({nullptr, 0, PFNC::Mono12p, 3, 4, 8}), 29U);
    EXPECT_EQ(ZelImage::ImageSize({nullptr, 0, PFNC::YCbCr420_8_YY_CbCr_Semiplanar, 6, 4, 0}), 36U);
    EXPECT_EQ(ZelImage::ImageSize({nullptr, 0, PFNC::RGB8_Planar, 2, 2, 3}), 17U);
    EXPECT_EQ(ZelImage::ImageSize({nullptr, 0, 0x81180001, 5, 2, 0}), 30U);
    EXPECT_EQ(ZelImage::ImageSize({nullptr, 0, PFNC::Mono8, 5, 2, 4}), 0U);
}

}  // namespace
