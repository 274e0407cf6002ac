// Grabs frames in a loop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/frames/frame.h"
#include "tools/zelcam/frames/grabreport.h"
#include "tools/zelcam/frames/softwaretrigger.h"

namespace ZelTool {

struct GrabLimits {
    uint64_t count = 1;  // 0: until Ctrl-C
    uint64_t timeoutMs = 5000;
};

// Gets each frame and its number, from 1. The image is valid until it returns. False ends the loop.
using FrameTaker = std::function<bool(const Frame& frame, uint64_t number)>;

// Grabs with at least that many buffers until the count is reached, Ctrl-C, or a failure. The
// report, whose camera must be set, gets the result and the failure. `trigger` may be null.
void GrabFrames(OpenedCamera& camera, size_t buffers, const GrabLimits& limits,
                SoftwareTrigger* trigger, const FrameTaker& take, GrabReport& report);

}  // namespace ZelTool
