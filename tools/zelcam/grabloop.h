// Frames from a running acquisition.
#ifndef ZELCAM_TOOLS_ZELCAM_GRABLOOP_H
#define ZELCAM_TOOLS_ZELCAM_GRABLOOP_H

#include <cstddef>
#include <cstdint>

#include "tools/zelcam/acquisition.h"
#include "tools/zelcam/framefile.h"
#include "tools/zelcam/grabreport.h"

struct GrabLimits {
    uint64_t count = 1;  // 0: until Ctrl-C
    uint64_t timeoutMs = 5000;
};

// Grabs from the camera with at least that many buffers until the count is reached, Ctrl-C, or a
// failure. What came of it, the failure too, is noted in the report, whose camera must be set.
void GrabFrames(OpenedCamera& camera, size_t buffers, const GrabLimits& limits,
                const FrameWriter& writer, GrabReport& report);

#endif  // ZELCAM_TOOLS_ZELCAM_GRABLOOP_H
