// User sets of a camera.
#pragma once

#include <cstddef>

#include "producers/simulator/camera/cameracontrol.h"
#include "producers/simulator/camera/permanentmemory.h"

namespace ZelSim {

// Settings that a camera remembers; the first set is that of the factory. Guarded by the lock of
// the register space.
class UserSets {
  public:
    static constexpr size_t kCount = PermanentMemory::kNumUserSets;

    UserSets(CameraControl& control, PermanentMemory& memory)
        : control_(control), memory_(memory) {}

    // Throws what CameraControl::ChangeFixed throws.
    void Load(size_t index);

    void Save(size_t index);  // throws GC_ERR_ACCESS_DENIED for the first one

    // The set with which the camera starts.
    size_t Default() const { return memory_.defaultUserSet; }
    void SetDefault(size_t index) { memory_.defaultUserSet = index; }

  private:
    CameraControl& control_;
    PermanentMemory& memory_;
};

}  // namespace ZelSim
