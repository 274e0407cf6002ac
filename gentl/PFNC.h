// The pixel formats of PFNC, as GenICam_3_0::PFNC::PixelFormatStandardValue. The list itself is
// part of what the node-map engine installs.
#ifndef ZELCAM_GENTL_PFNC_H
#define ZELCAM_GENTL_PFNC_H

#include "genapi/include/GenTL/PFNC.h"  // IWYU pragma: export

#endif  // ZELCAM_GENTL_PFNC_H
