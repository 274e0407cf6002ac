// Converts the bytes of a camera to a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Imaging {

// An image as the camera sent it. The caller owns `data`, which has `size` bytes.
struct RawImage {
    const uint8_t* data;
    size_t size;
    uint64_t pixelFormat;  // PFNC number
    size_t width;
    size_t height;
    size_t linePadding = 0;  // bytes after each line

    // Bytes from one line to the next, and of the whole image without the last line's padding.
    size_t LinePitch() const;
    size_t ImageBytes() const;
};

// A picture to look at: gray (one channel) or red, green, blue (three), line by line without gaps.
// Samples have 16 bits in memory for both depths, so that one code path suffices.
struct Picture {
    size_t width = 0;
    size_t height = 0;
    size_t channels = 1;
    uint32_t depth = 8;  // 8 or 16: full scale is 255 or 65535
    std::vector<uint16_t> samples;
};

// Unpacks, demosaics (bilinear) and converts to RGB what needs it; alpha is dropped. Formats of up
// to 8 bits become 8-bit pictures, others 16-bit ones. Values are stretched so that full scale of
// the camera is full scale of the picture: v * 65535 / (2^bits - 1), rounded.
//
// Reads nothing outside the image. Throws Error for a format it does not know, an image without
// pixels, and a buffer that is too small for the image.
Picture Decode(const RawImage& image);

}  // namespace Imaging
