// Pictures as the bytes of files. Every function throws Error when the encoder refuses the picture.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// Gray or RGB, 8 or 16 bits per sample.
std::vector<uint8_t> EncodePng(const Picture& picture);

// The same without compression, which is the fastest. Refuses a picture of 4 GB.
std::vector<uint8_t> EncodeTiff(const Picture& picture);

// Only resembles the picture: gray or RGB with 8 bits per sample, the upper ones of a deeper
// picture. Refuses a picture of more than 65500 lines.
std::vector<uint8_t> EncodeJpeg(const Picture& picture);

}  // namespace Imaging
