// User sets of a camera.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "producers/simulator/camera/cameracontrol.h"

namespace ZelSim {

// Settings that a camera remembers; the first set is that of the factory. Guarded by the lock of
// the register space.
class UserSets {
  public:
    static constexpr size_t kCount = 3;

    // All sets are the present settings.
    explicit UserSets(CameraControl& control);

    // Throws what CameraControl::ChangeFixed throws.
    void Load(size_t index);
    void LoadDefault() { Load(default_); }

    void Save(size_t index);  // throws GC_ERR_ACCESS_DENIED for the first one

    // The set that a reset loads.
    size_t Default() const { return default_; }
    void SetDefault(size_t index) { default_ = index; }

  private:
    CameraControl& control_;
    std::array<FrameSettings, kCount> sets_;
    size_t default_ = 0;
};

}  // namespace ZelSim
