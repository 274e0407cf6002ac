// Pictures as TIFF files.
#ifndef ZELCAM_TOOLS_IMAGING_TIFF_H
#define ZELCAM_TOOLS_IMAGING_TIFF_H

#include <cstdint>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// The bytes of a TIFF file without compression, which is the fastest: gray or RGB, 8 or 16 bits per
// sample. Throws Error when the encoder refuses the picture, one of 4 GB for instance.
std::vector<uint8_t> EncodeTiff(const Picture& picture);

}  // namespace Imaging

#endif  // ZELCAM_TOOLS_IMAGING_TIFF_H
