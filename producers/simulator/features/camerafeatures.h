// The features of a camera.
#pragma once

#include <functional>

#include "producers/server/registers/featuretable.h"
#include "producers/simulator/camera/devicefiles.h"
#include "producers/simulator/features/usersets.h"

namespace ZelSim {

class Camera;

// The registers of a camera, and the state behind them that is guarded by the lock of the register
// space. Made before the settings of the camera can change, since only registers change them.
class CameraFeatures {
  public:
    // Adds the features to a table over the space. The object and the camera must outlive the use
    // of the registers. DeviceReset calls `powerCycle`.
    CameraFeatures(Camera& camera, std::function<void()> powerCycle, ZelCti::RegisterSpace& space,
                   ZelCti::FeatureTable& table);

  private:
    Flash flash_;
    DeviceFiles files_;
    UserSets userSets_;
};

}  // namespace ZelSim
