// The pixel formats that simulated cameras can send.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace ZelSim {

// How the components of a format are laid out over the pixels of a line.
enum class Sampling {
    Pixel,   // every pixel carries all components
    Mosaic,  // a cell of two by two pixels; each pixel carries one of the four components
    Pair     // two neighbouring pixels share the chroma of the first: four components a pair
};

// How component values become bytes.
enum class Packing {
    Words,  // one byte, or two bytes little endian, for each value
    Lsb,    // PFNC "p": a stream of bits, least significant first
    Gev     // GigE Vision "Packed": two values in three bytes, the low bits of both in the middle
};

struct PixelFormat {
    const char* name;  // PFNC name
    uint32_t value;    // PFNC value
    Sampling sampling;
    const char* components;  // letters R G B A Y U V, in the order of the bytes or cells
    unsigned bits;           // of one component
    Packing packing;

    unsigned BitsPerPixel() const { return value >> 16 & 0xFFU; }

    // Whether lines of this width are whole bytes and whole groups of pixels.
    bool AcceptsWidth(size_t width) const;

    size_t LineBytes(size_t width) const { return width * BitsPerPixel() / 8; }
};

// The format with this PFNC name or value; null for an unknown one.
const PixelFormat* FindPixelFormat(std::string_view name);
const PixelFormat* FindPixelFormat(uint32_t value);

std::vector<PixelFormat> AllPixelFormats();

}  // namespace ZelSim
