// Pictures as JPEG files.
#ifndef ZELCAM_TOOLS_IMAGING_JPEG_H
#define ZELCAM_TOOLS_IMAGING_JPEG_H

#include <cstdint>
#include <vector>

#include "tools/imaging/decode.h"

namespace Imaging {

// The bytes of a JPEG file, which is not what the camera saw but looks like it: gray or RGB with
// 8 bits per sample, of deeper pictures the upper ones. Throws Error when the encoder refuses the
// picture, one of more than 65500 lines for instance.
std::vector<uint8_t> EncodeJpeg(const Picture& picture);

}  // namespace Imaging

#endif  // ZELCAM_TOOLS_IMAGING_JPEG_H
