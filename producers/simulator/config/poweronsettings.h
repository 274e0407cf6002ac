// The settings that a configuration gives.
#pragma once

#include "producers/simulator/config/config.h"
#include "producers/simulator/frame/framesettings.h"

namespace ZelSim {

// The settings of a camera that has just been switched on.
FrameSettings PowerOnSettings(const CameraConfig& config);

}  // namespace ZelSim
