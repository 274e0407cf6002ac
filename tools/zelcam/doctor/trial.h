// Tries a camera: opens it and lets it send for a moment.
#pragma once

#include "tools/zelcam/camera/session.h"
#include "tools/zelcam/doctor/snapshot.h"

namespace ZelTool {

// Takes a few seconds at most, whatever the camera does. A camera that another program controls is
// only read. What is set for the trial is restored.
TrialFacts TryCamera(const Camera& camera);

}  // namespace ZelTool
