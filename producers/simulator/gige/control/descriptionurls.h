// Where a served camera says that its description is.
#pragma once

#include <array>
#include <string>

#include "producers/server/registers/portregisters.h"
#include "producers/simulator/config/config.h"

namespace ZelSim {

// The texts of the first and of the second URL register, in the form that the switches choose. What
// the configuration announces comes first, and the camera's own description last.
std::array<std::string, 2> DescriptionUrls(const CameraConfig& config,
                                           const NetworkSettings& settings,
                                           ZelCti::PortRegisters& registers);

}  // namespace ZelSim
