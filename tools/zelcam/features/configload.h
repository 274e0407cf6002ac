// Loads a configuration into a camera.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/features/configfile.h"

namespace ZelTool {

// A feature that did not accept its value.
struct LoadFailure {
    std::string feature;
    std::string reason;
};

// Loads as many settings as possible and returns those that failed. It leaves out the user name of
// another camera, with a note, unless `withUserName` is set. Throws Failure (FeatureFailed) when
// nothing can be loaded at all.
std::vector<LoadFailure> LoadSettings(OpenedCamera& camera, Configuration configuration,
                                      bool withUserName);

}  // namespace ZelTool
