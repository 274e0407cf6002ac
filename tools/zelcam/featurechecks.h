// Checks of the features of a camera. Each tells what it saw, or throws Failure or Skip.
#ifndef ZELCAM_TOOLS_ZELCAM_FEATURECHECKS_H
#define ZELCAM_TOOLS_ZELCAM_FEATURECHECKS_H

#include <string>

#include "tools/zelcam/openedcamera.h"

// Whatever says that it is readable can be read.
std::string CheckReading(ZelGenParam::Array& features);

// Values are within their limits, and entries among those there are.
std::string CheckLimits(ZelGenParam::Array& features);

// What belongs to a configuration takes another value, and its old one again. Other features are
// left alone: they may start something, or last. In the end all settings are as they were.
std::string CheckWriting(OpenedCamera& camera);

// The settings as a configuration file: saved, loaded, and still the same.
std::string CheckConfiguration(OpenedCamera& camera);

#endif  // ZELCAM_TOOLS_ZELCAM_FEATURECHECKS_H
