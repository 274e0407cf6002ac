// Checks the features of a camera for reasons why no frame arrives.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/zelcam/frames/cameraside.h"

namespace ZelTool {

// The result of one check.
struct Check {
    bool good;
    std::string finding;
    std::string advice;  // for a check that is not good; may be empty
};

// Checks the features that decide whether and when the camera sends. Leaves out features that the
// camera does not have. Changes TriggerSelector and restores it. `cameraId` is for the advice,
// `triggersSent` the number of software triggers for the selected trigger.
std::vector<Check> CheckCamera(const CameraSide& camera, const std::string& cameraId,
                               uint64_t timeoutMs, uint64_t triggersSent);

// Why the camera sends no more than `frames` after a start; empty when it would send more.
std::string WhyAllWereSent(const CameraSide& camera, uint64_t frames);

}  // namespace ZelTool
