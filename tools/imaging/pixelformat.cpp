#include "tools/imaging/pixelformat.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "gentl/PFNC.h"

namespace Imaging {
namespace {

namespace PFNC = GenICam_3_0::PFNC;

// One row: the PFNC name, which is the enumerator's too, and what it stands for.
#define FORMAT(name, layout, packing, ...) \
    { PFNC::name, #name, Layout::layout, Packing::packing, __VA_ARGS__ }

// The rows that every Bayer phase and monochrome have in common.
#define SINGLE_COMPONENT(prefix, layout)                                                      \
    FORMAT(prefix##8, layout, Bytes, 8), FORMAT(prefix##10, layout, Words, 10),               \
        FORMAT(prefix##12, layout, Words, 12), FORMAT(prefix##14, layout, Words, 14),         \
        FORMAT(prefix##16, layout, Words, 16), FORMAT(prefix##10p, layout, LsbFirst, 10),     \
        FORMAT(prefix##12p, layout, LsbFirst, 12), FORMAT(prefix##14p, layout, LsbFirst, 14), \
        FORMAT(prefix##10Packed, layout, GigEVision, 10),                                     \
        FORMAT(prefix##12Packed, layout, GigEVision, 12)

#define MULTI_COMPONENT(prefix, layout)                                                   \
    FORMAT(prefix##8, layout, Bytes, 8), FORMAT(prefix##10, layout, Words, 10),           \
        FORMAT(prefix##12, layout, Words, 12), FORMAT(prefix##14, layout, Words, 14),     \
        FORMAT(prefix##16, layout, Words, 16), FORMAT(prefix##10p, layout, LsbFirst, 10), \
        FORMAT(prefix##12p, layout, LsbFirst, 12)

constexpr PixelFormat kFormats[] = {
    FORMAT(Mono1p, Mono, LsbFirst, 1),
    FORMAT(Mono2p, Mono, LsbFirst, 2),
    FORMAT(Mono4p, Mono, LsbFirst, 4),
    SINGLE_COMPONENT(Mono, Mono),
    SINGLE_COMPONENT(BayerGR, BayerGR),
    SINGLE_COMPONENT(BayerRG, BayerRG),
    SINGLE_COMPONENT(BayerGB, BayerGB),
    SINGLE_COMPONENT(BayerBG, BayerBG),
    MULTI_COMPONENT(RGB, Rgb),
    MULTI_COMPONENT(BGR, Bgr),
    MULTI_COMPONENT(RGBa, Rgba),
    MULTI_COMPONENT(BGRa, Bgra),
    FORMAT(YUV422_8, Yuyv, Bytes, 8),
    FORMAT(YUV422_8_UYVY, Uyvy, Bytes, 8),
    FORMAT(YUV8_UYV, Uyv, Bytes, 8),
    FORMAT(YCbCr422_8, Yuyv, Bytes, 8),
    FORMAT(YCbCr422_8_CbYCrY, Uyvy, Bytes, 8),
    FORMAT(YCbCr422_10, Yuyv, Words, 10),
    FORMAT(YCbCr422_12, Yuyv, Words, 12),
    FORMAT(YCbCr422_10p, Yuyv, LsbFirst, 10),
    FORMAT(YCbCr422_12p, Yuyv, LsbFirst, 12),
    FORMAT(YCbCr8, Yuv, Bytes, 8),
    FORMAT(YCbCr8_CbYCr, Uyv, Bytes, 8),
    FORMAT(YCbCr601_422_8, Yuyv, Bytes, 8, YuvRange::Limited),
    FORMAT(YCbCr601_422_8_CbYCrY, Uyvy, Bytes, 8, YuvRange::Limited),
    FORMAT(YCbCr601_8_CbYCr, Uyv, Bytes, 8, YuvRange::Limited),
};

#undef MULTI_COMPONENT
#undef SINGLE_COMPONENT
#undef FORMAT

}  // namespace

size_t PixelFormat::Components() const {
    if (layout == Layout::Mono || IsBayer()) return 1;
    if (layout == Layout::Yuyv || layout == Layout::Uyvy) return 2;
    return layout == Layout::Rgba || layout == Layout::Bgra ? 4 : 3;
}

const PixelFormat* FindPixelFormat(uint64_t value) {
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](const PixelFormat& f) { return f.value == value; });
    return found == std::end(kFormats) ? nullptr : found;
}

std::string PixelFormatNumber(uint64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%08llX", static_cast<unsigned long long>(value));
    return text;
}

const PixelFormat& GetPixelFormat(uint64_t value) {
    if (const PixelFormat* format = FindPixelFormat(value)) return *format;
    throw Error("pixel format " + PixelFormatNumber(value) + " cannot be converted to a picture");
}

std::string PixelFormatName(uint64_t value) {
    const PixelFormat* format = FindPixelFormat(value);
    return format ? format->name : PixelFormatNumber(value);
}

}  // namespace Imaging
