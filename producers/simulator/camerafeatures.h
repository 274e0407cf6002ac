// The registers behind the features of a camera.
#ifndef ZELSIM_CAMERAFEATURES_H
#define ZELSIM_CAMERAFEATURES_H

#include <array>
#include <cstdint>

#include "producers/simulator/flash.h"
#include "producers/simulator/framesettings.h"

namespace ZelSim {

class Camera;

// Gives the register space of a camera the registers that the fragments camera*.xml describe, and
// keeps the state that only registers show. Part of the camera; its state is guarded by the lock of
// the register space.
class CameraFeatures {
  public:
    explicit CameraFeatures(Camera& camera);

  private:
    static constexpr uint32_t kNumUserSets = 3;  // the first is that of the factory

    void AddIdentification();
    void AddDeviceControl();
    void AddSensor();
    void AddCalibration();
    void AddLines();
    void AddUserSets();
    void AddTransport();
    void AddPackets();

    void LoadUserSet(size_t index);
    void SaveUserSet(size_t index);

    Camera& camera_;
    Flash flash_;
    std::array<FrameSettings, kNumUserSets> userSets_;
    uint64_t defaultUserSet_ = 0;
    uint64_t latchedTicks_ = 0;
    bool unlocked_ = false;
    uint64_t calibratedNs_ = 0;  // when the calibration ends
    uint64_t numCalibrations_ = 0;
};

}  // namespace ZelSim

#endif  // ZELSIM_CAMERAFEATURES_H
