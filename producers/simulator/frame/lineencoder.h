// Colours to the bytes of a pixel format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "producers/simulator/frame/pixelformat.h"

namespace ZelSim {

struct Rgb {
    uint8_t r;
    uint8_t g;
    uint8_t b;

    bool operator==(const Rgb& other) const { return r == other.r && g == other.g && b == other.b; }
};

// Encodes a line of pixels, row `row` of the image. Luma and chroma follow BT.601 over the
// full range; a pair has the chroma of its first pixel. Components of more than 8 bits span
// their full range, right-aligned. Alpha is opaque.
std::vector<uint8_t> EncodeLine(const PixelFormat& format, const std::vector<Rgb>& pixels,
                                size_t row);

}  // namespace ZelSim
