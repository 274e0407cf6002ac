// Pictures as PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// The bytes of a PNG file: gray or RGB, 8 or 16 bits per sample. Throws Error when the encoder
// refuses the picture.
std::vector<uint8_t> EncodePng(const Picture& picture);

}  // namespace Imaging
