// Checks of the features of a camera. Each returns a detail for the report, or throws Failure or
// Skip.
#pragma once

#include <string>

#include "tools/zelcam/camera/openedcamera.h"

namespace ZelTool {

// Every feature that reports to be readable can be read.
std::string CheckReading(ZelGenParam::Array& features);

// Numbers are within their limits, and enumerations have one of their entries.
std::string CheckLimits(ZelGenParam::Array& features);

// Every feature of a configuration accepts another value and then its old one. Other features are
// not written: writing may start something, or outlast the check. At the end all settings are
// restored.
std::string CheckWriting(OpenedCamera& camera);

// Saving and loading a configuration file leaves all settings as they were.
std::string CheckConfiguration(OpenedCamera& camera);

}  // namespace ZelTool
