#include "producers/simulator/frame/pixelformat.h"

#include <algorithm>
#include <iterator>

#include "gentl/PFNC.h"

namespace ZelSim {

namespace {

namespace Pfnc = GenICam_3_0::PFNC;

#define FORMAT(name, sampling, components, bits, packing) \
    { #name, Pfnc::name, Sampling::sampling, components, bits, Packing::packing }

#define BAYER(phase, cell)                                     \
    FORMAT(Bayer##phase##8, Mosaic, cell, 8, Words),           \
        FORMAT(Bayer##phase##10, Mosaic, cell, 10, Words),     \
        FORMAT(Bayer##phase##10p, Mosaic, cell, 10, Lsb),      \
        FORMAT(Bayer##phase##10Packed, Mosaic, cell, 10, Gev), \
        FORMAT(Bayer##phase##12, Mosaic, cell, 12, Words),     \
        FORMAT(Bayer##phase##12p, Mosaic, cell, 12, Lsb),      \
        FORMAT(Bayer##phase##12Packed, Mosaic, cell, 12, Gev), \
        FORMAT(Bayer##phase##14, Mosaic, cell, 14, Words),     \
        FORMAT(Bayer##phase##14p, Mosaic, cell, 14, Lsb),      \
        FORMAT(Bayer##phase##16, Mosaic, cell, 16, Words)

#define COLOUR(order, letters)                                                                     \
    FORMAT(order##8, Pixel, letters, 8, Words), FORMAT(order##10, Pixel, letters, 10, Words),      \
        FORMAT(order##10p, Pixel, letters, 10, Lsb), FORMAT(order##12, Pixel, letters, 12, Words), \
        FORMAT(order##12p, Pixel, letters, 12, Lsb), FORMAT(order##14, Pixel, letters, 14, Words), \
        FORMAT(order##16, Pixel, letters, 16, Words)

constexpr PixelFormat kFormats[] = {
    FORMAT(Mono8, Pixel, "Y", 8, Words),
    FORMAT(Mono10, Pixel, "Y", 10, Words),
    FORMAT(Mono10p, Pixel, "Y", 10, Lsb),
    FORMAT(Mono10Packed, Pixel, "Y", 10, Gev),
    FORMAT(Mono12, Pixel, "Y", 12, Words),
    FORMAT(Mono12p, Pixel, "Y", 12, Lsb),
    FORMAT(Mono12Packed, Pixel, "Y", 12, Gev),
    FORMAT(Mono14, Pixel, "Y", 14, Words),
    FORMAT(Mono14p, Pixel, "Y", 14, Lsb),
    FORMAT(Mono16, Pixel, "Y", 16, Words),
    BAYER(RG, "RGGB"),
    BAYER(GR, "GRBG"),
    BAYER(GB, "GBRG"),
    BAYER(BG, "BGGR"),
    COLOUR(RGB, "RGB"),
    COLOUR(BGR, "BGR"),
    COLOUR(RGBa, "RGBA"),
    COLOUR(BGRa, "BGRA"),
    FORMAT(YUV422_8, Pair, "YUYV", 8, Words),
    FORMAT(YUV422_8_UYVY, Pair, "UYVY", 8, Words),
    FORMAT(YUV8_UYV, Pixel, "UYV", 8, Words),
    FORMAT(YCbCr8, Pixel, "YUV", 8, Words),
    FORMAT(YCbCr8_CbYCr, Pixel, "UYV", 8, Words),
    FORMAT(YCbCr422_8, Pair, "YUYV", 8, Words),
    FORMAT(YCbCr422_8_CbYCrY, Pair, "UYVY", 8, Words),
    FORMAT(YCbCr422_10, Pair, "YUYV", 10, Words),
    FORMAT(YCbCr422_10p, Pair, "YUYV", 10, Lsb),
    FORMAT(YCbCr422_12, Pair, "YUYV", 12, Words),
    FORMAT(YCbCr422_12p, Pair, "YUYV", 12, Lsb),
};

#undef COLOUR
#undef BAYER
#undef FORMAT

template <typename Matches>
const PixelFormat* FindFormat(Matches&& matches) {
    const auto* const end = std::end(kFormats);
    const auto* const found = std::find_if(std::begin(kFormats), end, matches);
    return found == end ? nullptr : found;
}

}  // namespace

bool PixelFormat::AcceptsWidth(size_t width) const {
    const bool pairs = sampling == Sampling::Pair || packing == Packing::Gev;
    return width * BitsPerPixel() % 8 == 0 && (!pairs || width % 2 == 0);
}

const PixelFormat* FindPixelFormat(std::string_view name) {
    return FindFormat([=](const PixelFormat& format) { return name == format.name; });
}

const PixelFormat* FindPixelFormat(uint32_t value) {
    return FindFormat([=](const PixelFormat& format) { return value == format.value; });
}

std::vector<PixelFormat> AllPixelFormats() {
    return {std::begin(kFormats), std::end(kFormats)};
}

}  // namespace ZelSim
