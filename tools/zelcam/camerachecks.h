// What a camera's features say about frames that do not come.
#ifndef ZELCAM_TOOLS_ZELCAM_CAMERACHECKS_H
#define ZELCAM_TOOLS_ZELCAM_CAMERACHECKS_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zelcam/cameraside.h"

// One thing that the program looked at.
struct Check {
    bool good;
    std::string finding;
    std::string advice;  // what to do when it is not good; may be empty
};

// Looks at the features that decide whether and when the camera sends. A feature that the camera
// does not have is left out. TriggerSelector is moved and put back. `cameraId` is for the advice;
// `triggersSent` are software triggers for the selected one.
std::vector<Check> CheckCamera(const CameraSide& camera, const std::string& cameraId,
                               uint64_t timeoutMs, uint64_t triggersSent);

// Whether `frames` are all that the camera sends for one start, and why; empty when they are not.
std::string WhyAllWereSent(const CameraSide& camera, uint64_t frames);

#endif  // ZELCAM_TOOLS_ZELCAM_CAMERACHECKS_H
