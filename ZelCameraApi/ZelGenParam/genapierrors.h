// GenApi's exceptions as codes. Access by name and the parameter objects keep different codes for
// the same exception; each mapping stands once, here.
#pragma once

#include "ZelCam/Error.h"

namespace ZelCameraApi::Internal {

// Only a write can violate a feature's limits: a limit that is hit while reading is a failure like
// any other.
enum class ValueAccess { Read, Write };

// The code of the exception under way; to be called in a handler.

// For access by name. Rethrows what is neither an exception of GenApi nor a lack of memory: it
// comes from a sink of the application.
ZelCamErr CodeOfNamedAccess(ValueAccess access);

// For parameter objects, whatever the exception.
ZelCamErr CodeOfParamAccess(ValueAccess access) noexcept;

// For the creation of an array, whatever the exception.
ZelCamErr CodeOfCreation() noexcept;

}  // namespace ZelCameraApi::Internal
