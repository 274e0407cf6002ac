// Pictures as JPEG files.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// The bytes of a JPEG file, which only resembles the picture: gray or RGB with 8 bits per sample,
// the upper ones of a deeper picture. Throws Error when the encoder refuses the picture, for
// instance one of more than 65500 lines.
std::vector<uint8_t> EncodeJpeg(const Picture& picture);

}  // namespace Imaging
