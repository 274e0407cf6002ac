// Pictures as TIFF files.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// The bytes of a TIFF file without compression, which is the fastest: gray or RGB, 8 or 16 bits per
// sample. Throws Error when the encoder refuses the picture, for instance one of 4 GB.
std::vector<uint8_t> EncodeTiff(const Picture& picture);

}  // namespace Imaging
