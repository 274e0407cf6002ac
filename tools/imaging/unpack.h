// The components of a line as numbers, whatever their packing.
#ifndef ZELCAM_TOOLS_IMAGING_UNPACK_H
#define ZELCAM_TOOLS_IMAGING_UNPACK_H

#include <cstddef>
#include <cstdint>

#include "tools/imaging/pixelformat.h"

namespace Imaging {

// Unpacks `count` components from `line` to `out`. The line has the bytes that LineBytes tells.
// Bits above the depth, which a camera should leave 0, are cut off at full scale.
void UnpackLine(const PixelFormat& format, const uint8_t* line, size_t count, uint16_t* out);

}  // namespace Imaging

#endif  // ZELCAM_TOOLS_IMAGING_UNPACK_H
