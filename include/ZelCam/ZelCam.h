// ZelCam: cameras for machine vision through GenICam GenTL producers.
//
// This header brings in the whole camera model. Parameters are in ZelGenParam/Array.h and
// ZelGenParam/Param.h.
//
// Words used throughout for the use of objects from several threads:
//   thread-safe   any threads may call at once
//   thread-bound  one thread at a time may use the object; others may use other objects meanwhile,
//                 also objects of the same System, and the object's own streams, buffers or
//                 features
// Obtaining or releasing an object is a use of the one it comes from: of the Device for a Stream,
// of the DeviceInfo for a Device, of the object that made it for a List. Release ends what the
// object owns, too, so no other thread may use any of that then.
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
