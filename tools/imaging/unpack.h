// Unpacks the components of a line to numbers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tools/imaging/pixelformat.h"

namespace Imaging {

// Unpacks `count` components from `line` to `out`. The line has as many bytes as LineBytes returns.
// Bits above the depth, which a camera should leave 0, are cut off at full scale.
void UnpackLine(const PixelFormat& format, const uint8_t* line, size_t count, uint16_t* out);

}  // namespace Imaging
