// GenDC containers: payloads that describe themselves. A descriptor at the begin names components,
// each with parts, whose data lie anywhere in the container.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZelCam/Buffer.h"

namespace ZelCameraApi::Internal {

// Components, and parts of all of them, that a container may have. Cameras have some; no damaged
// container makes a loop long.
constexpr size_t kMostGenDcParts = 1024;

// The parts in the order of their components, without those of components that the camera marks as
// invalid. Reads the headers only, and nothing outside of the bytes. Throws zelcam_exception with
// GC_ERR_INVALID_BUFFER if the bytes are no container, or if headers and data reach beyond them,
// overlap, or are too many.
std::vector<ZelBufferPart> FindGenDcParts(uint8_t* bytes, size_t size);

}  // namespace ZelCameraApi::Internal
