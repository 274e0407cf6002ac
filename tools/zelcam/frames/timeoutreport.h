// Finds out why no frame arrives.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/camera/session.h"
#include "tools/zelcam/frames/acquisition.h"
#include "tools/zelcam/frames/camerachecks.h"
#include "tools/zelcam/frames/framestatistics.h"

namespace ZelTool {

// Checks everything that the stream and the camera report, the most likely causes first. Call it
// while the acquisition runs. `triggersSent`: see CheckCamera.
std::vector<Check> CheckSilence(Acquisition& acquisition, const Camera& camera,
                                const FrameStatistics& statistics, uint64_t timeoutMs,
                                uint64_t triggersSent);

// Causes that the program cannot check and that would stop every frame, the most likely first.
std::vector<std::string> OtherCauses(const Camera& camera);

// The first advice for the user.
std::string NextStep(const std::vector<Check>& checks, const std::vector<std::string>& otherCauses);

}  // namespace ZelTool
