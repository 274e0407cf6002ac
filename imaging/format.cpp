#include "imaging/format.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "gentl/PFNC.h"
#include "imaging/error.h"

namespace ZelImage {

namespace Internal {

namespace {

namespace PFNC = GenICam_3_0::PFNC;

// One row: the PFNC name, which is the enumerator's too, and what it stands for.
#define FORMAT(name, kind, layout, packing, ...) \
    { #name, PFNC::name, FormatKind::kind, Layout::layout, Packing::packing, __VA_ARGS__ }

// The rows of families that have the same depths.
#define UP_TO_12(prefix, kind, layout)                                                            \
    FORMAT(prefix##8, kind, layout, Unpacked, 8), FORMAT(prefix##10, kind, layout, Unpacked, 10), \
        FORMAT(prefix##10p, kind, layout, LsbFirst, 10),                                          \
        FORMAT(prefix##12, kind, layout, Unpacked, 12),                                           \
        FORMAT(prefix##12p, kind, layout, LsbFirst, 12)

#define UP_TO_16(prefix, kind, layout)                                              \
    UP_TO_12(prefix, kind, layout), FORMAT(prefix##14, kind, layout, Unpacked, 14), \
        FORMAT(prefix##16, kind, layout, Unpacked, 16)

#define GIGE_VISION(prefix, kind, layout)                                            \
    UP_TO_16(prefix, kind, layout), FORMAT(prefix##14p, kind, layout, LsbFirst, 14), \
        FORMAT(prefix##10Packed, kind, layout, GigEVision, 10),                      \
        FORMAT(prefix##12Packed, kind, layout, GigEVision, 12)

#define BAYER(phase)                                            \
    FORMAT(Bayer##phase##4p, Bayer, Bayer##phase, LsbFirst, 4), \
        GIGE_VISION(Bayer##phase, Bayer, Bayer##phase)

#define COLOUR_PLANE(prefix, layout)                                      \
    FORMAT(prefix##8, ColourPlane, layout, Unpacked, 8),                  \
        FORMAT(prefix##10, ColourPlane, layout, Unpacked, 10),            \
        FORMAT(prefix##10_Deprecated, ColourPlane, layout, LsbFirst, 10), \
        FORMAT(prefix##12, ColourPlane, layout, Unpacked, 12),            \
        FORMAT(prefix##12_Deprecated, ColourPlane, layout, LsbFirst, 12), \
        FORMAT(prefix##16, ColourPlane, layout, Unpacked, 16)

// `suffix` is empty or _Planar.
#define COORDINATES(prefix, layout, suffix)                                       \
    FORMAT(Coord3D_##prefix##8##suffix, Coordinates, layout, Unpacked, 8),        \
        FORMAT(Coord3D_##prefix##10p##suffix, Coordinates, layout, LsbFirst, 10), \
        FORMAT(Coord3D_##prefix##12p##suffix, Coordinates, layout, LsbFirst, 12), \
        FORMAT(Coord3D_##prefix##16##suffix, Coordinates, layout, Unpacked, 16),  \
        FORMAT(Coord3D_##prefix##32f##suffix, Coordinates, layout, Unpacked, 32,  \
               ComponentType::Float)

#define YCC(name, layout, packing, depth, matrix, range)                                  \
    FORMAT(name, Yuv, layout, packing, depth, ComponentType::Unsigned, YuvMatrix::matrix, \
           YuvRange::range)

// What plain YCbCr and the three of the ITU have in common.
#define YCC_FAMILY(prefix, matrix, range)                                  \
    YCC(prefix##8_CbYCr, CbYCr, Unpacked, 8, matrix, range),               \
        YCC(prefix##10_CbYCr, CbYCr, Unpacked, 10, matrix, range),         \
        YCC(prefix##10p_CbYCr, CbYCr, LsbFirst, 10, matrix, range),        \
        YCC(prefix##12_CbYCr, CbYCr, Unpacked, 12, matrix, range),         \
        YCC(prefix##12p_CbYCr, CbYCr, LsbFirst, 12, matrix, range),        \
        YCC(prefix##411_8_CbYYCrYY, CbYYCrYY, Unpacked, 8, matrix, range), \
        YCC(prefix##422_8, YCbYCr, Unpacked, 8, matrix, range),            \
        YCC(prefix##422_8_CbYCrY, CbYCrY, Unpacked, 8, matrix, range),     \
        YCC(prefix##422_10, YCbYCr, Unpacked, 10, matrix, range),          \
        YCC(prefix##422_10_CbYCrY, CbYCrY, Unpacked, 10, matrix, range),   \
        YCC(prefix##422_10p, YCbYCr, LsbFirst, 10, matrix, range),         \
        YCC(prefix##422_10p_CbYCrY, CbYCrY, LsbFirst, 10, matrix, range),  \
        YCC(prefix##422_12, YCbYCr, Unpacked, 12, matrix, range),          \
        YCC(prefix##422_12_CbYCrY, CbYCrY, Unpacked, 12, matrix, range),   \
        YCC(prefix##422_12p, YCbYCr, LsbFirst, 12, matrix, range),         \
        YCC(prefix##422_12p_CbYCrY, CbYCrY, LsbFirst, 12, matrix, range)

constexpr Format kFormats[] = {
    FORMAT(Mono1p, Mono, Single, LsbFirst, 1),
    FORMAT(Mono2p, Mono, Single, LsbFirst, 2),
    FORMAT(Mono4p, Mono, Single, LsbFirst, 4),
    FORMAT(Mono8s, Mono, Single, Unpacked, 8, ComponentType::Signed),
    GIGE_VISION(Mono, Mono, Single),
    FORMAT(Mono32, Mono, Single, Unpacked, 32),
    COLOUR_PLANE(R, Red),
    COLOUR_PLANE(G, Green),
    COLOUR_PLANE(B, Blue),
    BAYER(GR),
    BAYER(RG),
    BAYER(GB),
    BAYER(BG),
    UP_TO_16(SCF1WBWG, SparseColour, SparseWBWG),
    UP_TO_16(SCF1WGWB, SparseColour, SparseWGWB),
    UP_TO_16(SCF1WGWR, SparseColour, SparseWGWR),
    UP_TO_16(SCF1WRWG, SparseColour, SparseWRWG),
    UP_TO_16(RGB, Rgb, Rgb),
    UP_TO_16(BGR, Rgb, Bgr),
    UP_TO_16(RGBa, Rgb, Rgba),
    UP_TO_16(BGRa, Rgb, Bgra),
    FORMAT(RGB8_Planar, Rgb, RgbPlanar, Unpacked, 8),
    FORMAT(RGB10_Planar, Rgb, RgbPlanar, Unpacked, 10),
    FORMAT(RGB12_Planar, Rgb, RgbPlanar, Unpacked, 12),
    FORMAT(RGB16_Planar, Rgb, RgbPlanar, Unpacked, 16),
    FORMAT(RGB10p32, Rgb, Rgb, PixelWord, 10),
    FORMAT(RGB565p, Rgb, Rgb, PixelWord, 6),
    FORMAT(BGR565p, Rgb, Bgr, PixelWord, 6),
    FORMAT(RGB10V1Packed, Rgb, Rgb, Unknown, 10),
    FORMAT(RGB12V1Packed, Rgb, Rgb, Unknown, 12),
    UP_TO_12(BiColorRGBG, BiColour, BiColourRG),
    UP_TO_12(BiColorBGRG, BiColour, BiColourBG),
    YCC(YUV8_UYV, CbYCr, Unpacked, 8, Bt601, Full),
    YCC(YUV422_8, YCbYCr, Unpacked, 8, Bt601, Full),
    YCC(YUV422_8_UYVY, CbYCrY, Unpacked, 8, Bt601, Full),
    YCC(YUV411_8_UYYVYY, CbYYCrYY, Unpacked, 8, Bt601, Full),
    YCC(YCbCr8, YCbCr, Unpacked, 8, Bt601, Full),
    YCC(YCbCr411_8, YYCbYYCr, Unpacked, 8, Bt601, Full),
    YCC(YCbCr420_8_YY_CbCr_Semiplanar, Planes420, Unpacked, 8, Bt601, Full),
    YCC(YCbCr420_8_YY_CrCb_Semiplanar, Planes420Cr, Unpacked, 8, Bt601, Full),
    YCC(YCbCr422_8_YY_CbCr_Semiplanar, Planes422, Unpacked, 8, Bt601, Full),
    YCC(YCbCr422_8_YY_CrCb_Semiplanar, Planes422Cr, Unpacked, 8, Bt601, Full),
    YCC_FAMILY(YCbCr, Bt601, Full),
    YCC_FAMILY(YCbCr601_, Bt601, Limited),
    YCC_FAMILY(YCbCr709_, Bt709, Limited),
    YCC_FAMILY(YCbCr2020_, Bt2020, Limited),
    COORDINATES(A, CoordinateA, ),
    COORDINATES(B, CoordinateB, ),
    COORDINATES(C, CoordinateC, ),
    COORDINATES(ABC, Abc, ),
    COORDINATES(ABC, AbcPlanar, _Planar),
    COORDINATES(AC, Ac, ),
    COORDINATES(AC, AcPlanar, _Planar),
    FORMAT(Confidence1, Confidence, Single, Unpacked, 1),
    FORMAT(Confidence1p, Confidence, Single, LsbFirst, 1),
    FORMAT(Confidence8, Confidence, Single, Unpacked, 8),
    FORMAT(Confidence16, Confidence, Single, Unpacked, 16),
    FORMAT(Confidence32f, Confidence, Single, Unpacked, 32, ComponentType::Float),
    FORMAT(Data8, Data, Single, Unpacked, 8),
    FORMAT(Data8s, Data, Single, Unpacked, 8, ComponentType::Signed),
    FORMAT(Data16, Data, Single, Unpacked, 16),
    FORMAT(Data16s, Data, Single, Unpacked, 16, ComponentType::Signed),
    FORMAT(Data32, Data, Single, Unpacked, 32),
    FORMAT(Data32s, Data, Single, Unpacked, 32, ComponentType::Signed),
    FORMAT(Data32f, Data, Single, Unpacked, 32, ComponentType::Float),
    FORMAT(Data64, Data, Single, Unpacked, 64),
    FORMAT(Data64s, Data, Single, Unpacked, 64, ComponentType::Signed),
    FORMAT(Data64f, Data, Single, Unpacked, 64, ComponentType::Float),
};

#undef YCC_FAMILY
#undef YCC
#undef COORDINATES
#undef COLOUR_PLANE
#undef BAYER
#undef GIGE_VISION
#undef UP_TO_16
#undef UP_TO_12
#undef FORMAT

#define COUNT(name, value) +1
static_assert(std::size(kFormats) == 0 PFNC_FOR_EACH_FORMAT(COUNT), "a format has no row");
#undef COUNT

// Whether both have the same components in the same order.
bool IsSameBesidePacking(const Format& a, const Format& b) {
    return a.kind == b.kind && a.layout == b.layout && a.depth == b.depth && a.type == b.type &&
           a.matrix == b.matrix && a.range == b.range;
}

FormatInfo Describe(const Format& format) {
    FormatInfo info{};
    info.name = format.name;
    info.kind = format.kind;
    info.componentType = format.type;
    info.packing = format.packing;
    info.bitsPerPixel = BitsPerPixel(format.value);
    info.significantBits = format.depth;
    info.components = static_cast<uint32_t>(format.LineComponents(4) *
                                            (format.SharesLines() ? 1 : format.Planes()) / 4);
    info.componentBytes = static_cast<uint32_t>(format.ComponentBytes());
    info.isPlanar = format.IsPlanar();
    if (const Format* unpacked = UnpackedForm(format)) info.unpackedFormat = unpacked->value;
    const bool isDeep = format.PictureDepth() == 16;
    if (format.PictureChannels() == 1) info.pictureFormat = isDeep ? PFNC::Mono16 : PFNC::Mono8;
    if (format.PictureChannels() > 1) info.pictureFormat = isDeep ? PFNC::RGB16 : PFNC::RGB8;
    return info;
}

}  // namespace

size_t Format::Planes() const {
    switch (layout) {
        case Layout::RgbPlanar:
        case Layout::AbcPlanar:
            return 3;
        case Layout::AcPlanar:
        case Layout::Planes422:
        case Layout::Planes422Cr:
        case Layout::Planes420:
        case Layout::Planes420Cr:
            return 2;
        default:
            return 1;
    }
}

size_t Format::LineComponents(size_t width) const {
    switch (layout) {
        case Layout::Rgb:
        case Layout::Bgr:
        case Layout::YCbCr:
        case Layout::CbYCr:
        case Layout::Abc:
            return width * 3;
        case Layout::Rgba:
        case Layout::Bgra:
            return width * 4;
        case Layout::BiColourRG:
        case Layout::BiColourBG:
        case Layout::YCbYCr:
        case Layout::CbYCrY:
        case Layout::Ac:
            return width * 2;
        case Layout::YYCbYYCr:
        case Layout::CbYYCrYY:
            return width / 4 * 6;
        default:
            return width;
    }
}

size_t Format::PixelGroup() const {
    switch (layout) {
        case Layout::YCbYCr:
        case Layout::CbYCrY:
        case Layout::Planes422:
        case Layout::Planes422Cr:
        case Layout::Planes420:
        case Layout::Planes420Cr:
            return 2;
        case Layout::YYCbYYCr:
        case Layout::CbYYCrYY:
            return 4;
        default:
            return 1;
    }
}

size_t Format::ComponentBytes() const {
    if (packing == Packing::Unknown) return 0;
    return depth <= 8 ? 1 : depth <= 16 ? 2 : depth / 8;
}

size_t Format::PictureChannels() const {
    if (packing == Packing::Unknown || type == ComponentType::Float) return 0;
    switch (kind) {
        case FormatKind::Mono:
        case FormatKind::ColourPlane:
        case FormatKind::SparseColour:
        case FormatKind::Confidence:
            return 1;
        case FormatKind::Coordinates:
            return LineComponents(1) == 1 && !IsPlanar() ? 1 : 0;
        case FormatKind::Data:
            return 0;
        default:
            return layout == Layout::Rgba || layout == Layout::Bgra ? 4 : 3;
    }
}

const Format* FindFormat(uint64_t value) {
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](const Format& format) { return format.value == value; });
    return found == std::end(kFormats) ? nullptr : found;
}

const Format& GetFormat(uint64_t value) {
    if (const Format* format = FindFormat(value)) return *format;
    throw Error("the pixel format " + NameOf(value) + " is not known");
}

const Format* UnpackedForm(const Format& format) {
    const auto* found =
        std::find_if(std::begin(kFormats), std::end(kFormats), [&](const Format& other) {
            return other.packing == Packing::Unpacked && IsSameBesidePacking(format, other);
        });
    if (format.packing == Packing::Unpacked) return &format;
    return format.packing == Packing::Unknown || found == std::end(kFormats) ? nullptr : found;
}

std::string NameOf(uint64_t value) {
    if (const Format* format = FindFormat(value)) return format->name;
    char text[24];
    std::snprintf(text, sizeof text, "0x%08llX", static_cast<unsigned long long>(value));
    return text;
}

}  // namespace Internal

const char* FormatName(uint64_t pixelFormat) {
    const Internal::Format* format = Internal::FindFormat(pixelFormat);
    return format == nullptr ? nullptr : format->name;
}

uint64_t FormatByName(const char* name) {
    if (name == nullptr) return 0;
    for (const Internal::Format& format : Internal::kFormats)
        if (std::strcmp(format.name, name) == 0) return format.value;
    return 0;
}

bool DescribeFormat(uint64_t pixelFormat, FormatInfo* info, size_t size) {
    const Internal::Format* format = Internal::FindFormat(pixelFormat);
    if (info == nullptr) return false;
    std::memset(static_cast<void*>(info), 0, size);
    if (format == nullptr) return false;
    const FormatInfo known = Internal::Describe(*format);
    std::memcpy(static_cast<void*>(info), &known, std::min(size, sizeof known));
    return true;
}

uint64_t FormatAt(size_t index) {
    return index < std::size(Internal::kFormats) ? Internal::kFormats[index].value : 0;
}

}  // namespace ZelImage
