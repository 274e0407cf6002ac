// ZelCam: cameras for machine vision through GenICam GenTL producers.
//
// This header includes the whole camera model. Parameters are in ZelGenParam/Array.h and
// ZelGenParam/Param.h.
//
// Comments use these words for the use of objects by several threads:
//   thread-safe   any threads may call at once
//   thread-bound  one thread at a time may use the object; meanwhile, other threads may use other
//                 objects, including objects of the same System and the object's own streams,
//                 buffers or features
// Obtaining or releasing an object counts as a use of the object that it comes from: a Stream comes
// from its Device, a Device from its DeviceInfo, a List from the object that made it. Release also
// ends what the object owns, so no other thread may use any of that during Release.
//
// The interfaces are abstract classes. The library creates and destroys all objects. The
// application ends an object by its Release, if it has one, and never deletes an object. No
// operation throws unless its comment says so.
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
#include "ZelCam/Text.h"

#endif  // ZELCAM_ZELCAM_H
