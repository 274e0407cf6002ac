// The features of a camera.
#pragma once

#include "producers/server/registers/featuretable.h"
#include "producers/simulator/camera/flash.h"
#include "producers/simulator/features/usersets.h"

namespace ZelSim {

class Camera;

// Gives the register space of a camera its registers. Part of the camera; the state that only
// registers show is guarded by the lock of the register space.
class CameraFeatures {
  public:
    explicit CameraFeatures(Camera& camera);

    // The description of the camera itself: what it can do and how its registers are laid out.
    std::string Describe(const ZelCti::DescriptionHeader& header) const {
        return table_.Describe(header);
    }

  private:
    Flash flash_;
    UserSets userSets_;
    ZelCti::FeatureTable table_;
};

}  // namespace ZelSim
