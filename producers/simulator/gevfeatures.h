// The features that only GigE cameras and their interfaces have on this side.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "producers/server/registers/featuretable.h"
#include "producers/simulator/camera/camera.h"

namespace ZelSim {

// `selected` is asked at each access.
void AddGevInterfaceFeatures(ZelCti::FeatureTable& features, const std::string& id,
                             const IpSettings& adapter,
                             const std::function<std::shared_ptr<Camera>()>& selected);

// The camera outlives the registers.
void AddGevDeviceFeatures(ZelCti::FeatureTable& features, const Camera& camera);

}  // namespace ZelSim
