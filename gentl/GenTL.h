// The C interface of GenTL. The declarations themselves are part of what the node-map engine
// installs.
#ifndef ZELCAM_GENTL_GENTL_H
#define ZELCAM_GENTL_GENTL_H

#include "genapi/include/GenTL/GenTL_v1_6.h"  // IWYU pragma: export

#endif  // ZELCAM_GENTL_GENTL_H
