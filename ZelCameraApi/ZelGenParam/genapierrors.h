// GenApi's exceptions as codes. Access by name and parameter objects have different codes for the
// same exception; only this file knows the mappings.
#pragma once

#include "ZelCam/Error.h"

namespace ZelCameraApi::Internal {

// Only a write can violate a feature's limits: a violated limit during a read is a failure like any
// other.
enum class ValueAccess { Read, Write };

// The code of the current exception. Call them in an exception handler.

// For access by name. Rethrows exceptions that neither come from GenApi nor mean a lack of memory:
// they come from a sink of the application.
ZelCamErr CodeOfNamedAccess(ValueAccess access);

// For parameter objects, whatever the exception.
ZelCamErr CodeOfParamAccess(ValueAccess access) noexcept;

// For the creation of an array, whatever the exception.
ZelCamErr CodeOfCreation() noexcept;

}  // namespace ZelCameraApi::Internal
