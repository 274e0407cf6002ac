// Describes how the pixel formats of cameras are stored in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace Imaging {

// Thrown for an image that cannot be decoded or written; the text is meant for the user.
class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// How the components follow each other in a line.
enum class Packing {
    Bytes,       // one byte each
    Words,       // two bytes each, little-endian, value in the low bits
    LsbFirst,    // no gaps, least significant bit first: the "p" formats
    GigEVision,  // two in three bytes, high bits in the outer bytes: the "Packed" formats
};

// What the components mean. The four Bayer kinds are named by the first two pixels of the first
// line; the YUV kinds by the order of the components.
enum class Layout {
    Mono,
    BayerGR,
    BayerRG,
    BayerGB,
    BayerBG,
    Rgb,
    Bgr,
    Rgba,
    Bgra,
    Yuyv,  // two pixels share U and V
    Uyvy,  // two pixels share U and V
    Yuv,   // every pixel has its own
    Uyv,   // every pixel has its own
};

// How luma and chroma become red, green and blue. Both use the weights of ITU-R BT.601.
enum class YuvRange {
    Full,     // luma and chroma over the whole scale
    Limited,  // luma from 16 to 235, chroma from 16 to 240 (of 8 bits; deeper formats in
              // proportion)
};

struct PixelFormat {
    uint32_t value;  // PFNC number
    const char* name;
    Layout layout;
    Packing packing;
    uint32_t depth;  // bits of one component
    YuvRange range = YuvRange::Full;

    bool IsBayer() const { return layout >= Layout::BayerGR && layout <= Layout::BayerBG; }
    bool IsYuv() const { return layout >= Layout::Yuyv; }

    // Components stored for one pixel; two in the formats whose pixels share chroma.
    size_t Components() const;
};

// The format with that PFNC number. Null when this library cannot decode it.
const PixelFormat* FindPixelFormat(uint64_t value);

// The format with that PFNC number; throws Error when this library cannot decode it.
const PixelFormat& GetPixelFormat(uint64_t value);

// "0x01080001".
std::string PixelFormatNumber(uint64_t value);

// The name of the format, or its number when it is not known.
std::string PixelFormatName(uint64_t value);

// The bits of one pixel, which a PFNC number contains even for an unknown format.
constexpr uint32_t BitsPerPixel(uint64_t value) {
    return static_cast<uint32_t>(value >> 16) & 0xFF;
}

// Bytes of a line of `width` pixels: its bits rounded up to whole bytes.
constexpr size_t LineBytes(uint64_t value, size_t width) {
    return (width * BitsPerPixel(value) + 7) / 8;
}

}  // namespace Imaging
