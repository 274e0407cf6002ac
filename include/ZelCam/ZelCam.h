// ZelCam: cameras for machine vision through GenICam GenTL producers.
//
// This header brings in the whole camera model. Parameters are in ZelGenParam/Array.h and
// ZelGenParam/Param.h.
//
// Words used throughout for the use of objects from several threads:
//   thread-safe   any threads may call at once
//   reentrant     threads may call at once on different objects
//   thread-bound  one thread at a time may use the object and what it owns
//
// The interfaces are abstract classes. Objects are created and destroyed by the library; the
// application ends those that have a Release with it, and never deletes one. Unless a comment says
// so, no operation throws.
#ifndef ZELCAM_ZELCAM_H
#define ZELCAM_ZELCAM_H

#include "ZelCam/Buffer.h"
#include "ZelCam/Device.h"
#include "ZelCam/DeviceInfo.h"
#include "ZelCam/Error.h"
#include "ZelCam/Interface.h"
#include "ZelCam/List.h"
#include "ZelCam/PixelType.h"
#include "ZelCam/Stream.h"
#include "ZelCam/System.h"

#endif  // ZELCAM_ZELCAM_H
