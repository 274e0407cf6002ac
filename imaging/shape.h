// Where the lines of an image lie.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/format.h"

namespace ZelImage::Internal {

struct PlaneShape {
    size_t offset;  // of the first line
    size_t lines;
    size_t components;  // of a line
};

struct Shape {
    std::array<PlaneShape, 3> planes{};
    size_t planeCount = 1;
    size_t lineBytes = 0;  // of a line of each plane
    size_t pitch = 0;      // of each plane
    size_t bytes = 0;      // from the first to the last byte of the image
};

// The shape of an image; `format` is null for a number that is not in the table. `pitch` 0 is for
// lines without padding. Throws Error for a size that no image, or none of this format, can have.
Shape ShapeOf(uint64_t pixelFormat, const Format* format, size_t width, size_t height,
              size_t pitch);

// An image whose bytes are there.
struct Image {
    const Format& format;
    size_t width;
    size_t height;
    Shape shape;
    const uint8_t* data;

    const uint8_t* Line(size_t plane, size_t y) const {
        return data + shape.planes[plane].offset + y * shape.pitch;
    }
};

// Throws Error for an unknown format, and unless the bytes of `view` are enough for its size.
Image ImageOf(const View& view);

}  // namespace ZelImage::Internal
