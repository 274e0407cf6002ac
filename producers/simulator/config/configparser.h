// Reads configurations. Everything unknown or out of range is refused: a typing error must not end
// as a camera that differs from the one meant.
#pragma once

#include <string>

#include "producers/simulator/config/config.h"

namespace ZelSim {

// Parse...() throw an Error with GC_ERR_INVALID_PARAMETER and "source:line: reason"; `source` names
// the text in that message.
WorldConfig ParseConfig(const std::string& text, const std::string& source);
CameraConfig ParseCamera(const std::string& text, const std::string& source);

// The built-in configuration.
WorldConfig DefaultConfig();

}  // namespace ZelSim
