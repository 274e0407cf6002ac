// The table of pixel formats: what each means and how it is stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ZelImage/ZelImage.h"

namespace ZelImage::Internal {

// The order of the components. The Bayer kinds and the sparse ones are named by the first pixels of
// the first line.
enum class Layout : uint32_t {
    Single,
    Red,
    Green,
    Blue,
    BayerGR,
    BayerRG,
    BayerGB,
    BayerBG,
    SparseWBWG,
    SparseWGWB,
    SparseWGWR,
    SparseWRWG,
    Rgb,
    Bgr,
    Rgba,
    Bgra,
    RgbPlanar,
    BiColourRG,   // red and green, then blue and green
    BiColourBG,   // blue and green, then red and green
    YCbCr,        // every pixel has its own chroma
    CbYCr,        // every pixel has its own chroma
    YCbYCr,       // two pixels share chroma
    CbYCrY,       // two pixels share chroma
    YYCbYYCr,     // four pixels of a line share chroma
    CbYYCrYY,     // four pixels of a line share chroma
    Planes422,    // a plane of luma; a plane of chroma, Cb first, that two pixels share
    Planes422Cr,  // the same with Cr first
    Planes420,    // a plane of luma; a plane of chroma, Cb first, that two by two pixels share
    Planes420Cr,  // the same with Cr first
    CoordinateA,
    CoordinateB,
    CoordinateC,
    Abc,
    AbcPlanar,
    Ac,
    AcPlanar
};

struct Format {
    const char* name;
    uint32_t value;  // PFNC number
    FormatKind kind;
    Layout layout;
    Packing packing;
    uint32_t depth;  // bits of one component
    ComponentType type = ComponentType::Unsigned;
    YuvMatrix matrix = YuvMatrix::OfFormat;  // of YUV
    YuvRange range = YuvRange::OfFormat;     // of YUV

    size_t Planes() const;
    bool IsPlanar() const { return Planes() > 1; }

    // Components that one line of a plane stores, when the width is a multiple of PixelGroup.
    size_t LineComponents(size_t width) const;

    // Pixels side by side that share components; and whether lines do so, too.
    size_t PixelGroup() const;
    bool SharesLines() const {
        return layout == Layout::Planes420 || layout == Layout::Planes420Cr;
    }

    // Bytes of a component that is not packed any more; 0 if it cannot be unpacked.
    size_t ComponentBytes() const;

    // How pictures of the format look; 0 channels if there are none.
    size_t PictureChannels() const;
    uint32_t PictureDepth() const { return depth <= 8 ? 8 : 16; }
};

// The bits of one pixel, which a PFNC number contains even for an unknown format.
constexpr uint32_t BitsPerPixel(uint64_t value) {
    return static_cast<uint32_t>(value >> 16) & 0xFF;
}

// The format with that PFNC number. Null when it is not in the table.
const Format* FindFormat(uint64_t value);

// The same; throws Error when it is not in the table.
const Format& GetFormat(uint64_t value);

// The same components unpacked, which may be the format itself. Null when there is no such format.
const Format* UnpackedForm(const Format& format);

// "BayerRG8", or "0x01080009" for a number that is not in the table.
std::string NameOf(uint64_t value);

}  // namespace ZelImage::Internal
