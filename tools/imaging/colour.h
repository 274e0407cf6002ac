// Converts components to red, green and blue.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/imaging/pixelformat.h"

namespace Imaging {

// Components of a whole image in the order of its format, at the depth of the camera.
struct Components {
    size_t width;
    size_t height;
    std::vector<uint16_t> values;
};

// Bilinear demosaicing: a colour that a pixel lacks is the rounded mean of the neighbours (of the
// eight around it) that have it. At the borders these are the neighbours inside the image.
std::vector<uint16_t> Demosaic(const Components& mosaic, Layout layout);

// Reorders RGB, BGR, RGBa and BGRa; alpha is dropped.
std::vector<uint16_t> ReorderToRgb(const Components& image, Layout layout);

// Converts YUV:
//   R = Y + 1.402 V,  G = Y - 0.344136 U - 0.714136 V,  B = Y + 1.772 U
// with U and V less half scale (128 of 8 bits), after stretching a limited range to the full one;
// clamped to the depth of the camera and rounded. Two pixels that share chroma use the same values.
std::vector<uint16_t> YuvToRgb(const Components& image, const PixelFormat& format);

}  // namespace Imaging
