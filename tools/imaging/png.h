// Pictures as PNG files.
#ifndef ZELCAM_TOOLS_IMAGING_PNG_H
#define ZELCAM_TOOLS_IMAGING_PNG_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// The bytes of a PNG file: gray or RGB, 8 or 16 bits per sample. Throws Error when the encoder
// refuses the picture.
std::vector<uint8_t> EncodePng(const Picture& picture);

}  // namespace Imaging

#endif  // ZELCAM_TOOLS_IMAGING_PNG_H
