// Frames from a running acquisition.
#ifndef ZELCAM_TOOLS_ZELCAM_GRABLOOP_H
#define ZELCAM_TOOLS_ZELCAM_GRABLOOP_H

#include <cstddef>
#include <cstdint>
#include <functional>

#include "tools/zelcam/acquisition.h"
#include "tools/zelcam/frame.h"
#include "tools/zelcam/grabreport.h"
#include "tools/zelcam/softwaretrigger.h"

struct GrabLimits {
    uint64_t count = 1;  // 0: until Ctrl-C
    uint64_t timeoutMs = 5000;
};

// Takes a frame, whose number counts from 1; its image is valid until the return. False: no more
// are wanted.
using FrameTaker = std::function<bool(const Frame& frame, uint64_t number)>;

// Grabs from the camera with at least that many buffers until the count is reached, Ctrl-C, or a
// failure. What came of it, the failure too, is noted in the report, whose camera must be set.
// `trigger` may be null.
void GrabFrames(OpenedCamera& camera, size_t buffers, const GrabLimits& limits,
                SoftwareTrigger* trigger, const FrameTaker& take, GrabReport& report);

#endif  // ZELCAM_TOOLS_ZELCAM_GRABLOOP_H
