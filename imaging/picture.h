// Converts images to pictures.
#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/shape.h"

namespace ZelImage::Internal {

// What pictures are made of: gray; red, green and blue; or these and alpha.
struct PictureForm {
    size_t channels;  // 1, 3 or 4
    uint32_t depth;   // 8 or 16
    bool isBlueFirst;
};

// The form of Mono8, RGB16 and the like. False for a format that is no target of conversions.
bool FindForm(uint64_t pixelFormat, PictureForm& form);

// Throws Error for an image that is not converted to pictures.
void RequirePicture(const Image& image);

// Converts an image to lines at `to`, `pitch` bytes apart. Throws Error before it writes.
void ConvertToPicture(const Image& image, const PictureForm& form, const ConvertOptions& options,
                      uint8_t* to, size_t pitch);

}  // namespace ZelImage::Internal
