// Loading a configuration into a camera.
#ifndef ZELCAM_TOOLS_ZELCAM_CONFIGLOAD_H
#define ZELCAM_TOOLS_ZELCAM_CONFIGLOAD_H

#include <string>
#include <vector>

#include "tools/zelcam/configfile.h"
#include "tools/zelcam/openedcamera.h"

// Why a feature did not take its value.
struct LoadFailure {
    std::string feature;
    std::string reason;
};

// Loads what it can, and gives what failed. The name that a user gave another camera is left out
// with a note, unless it is wanted. Failure (FeatureFailed) when nothing can be loaded at all.
std::vector<LoadFailure> LoadSettings(OpenedCamera& camera, Configuration configuration,
                                      bool withUserName);

#endif  // ZELCAM_TOOLS_ZELCAM_CONFIGLOAD_H
