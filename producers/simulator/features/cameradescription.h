// The description of the camera itself.
#pragma once

#include <memory>

#include "producers/server/registers/description.h"
#include "producers/server/registers/featuretable.h"

namespace ZelSim {

class Camera;

// What the camera can do and how its registers are laid out, from its complete table.
std::unique_ptr<const ZelCti::Description> DescribeCamera(const Camera& camera,
                                                          const ZelCti::FeatureTable& features);

}  // namespace ZelSim
