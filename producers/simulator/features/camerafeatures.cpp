#include "producers/simulator/features/camerafeatures.h"

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

namespace {

constexpr uint64_t kNsPerMs = 1000000;

}  // namespace

CameraFeatures::CameraFeatures(Camera& camera)
    : flash_(
          *camera.Registers(), [&camera] { return camera.Nanoseconds(); },
          camera.Config().flashBusyTime * kNsPerMs),
      userSets_(camera.Control()),
      table_(*camera.Registers(), "Device") {
    AddDeviceControl(table_, camera, userSets_);
    AddImageFormatControl(table_, camera);
    AddAcquisitionControl(table_, camera);
    AddAnalogControl(table_, camera);
    AddDigitalIOControl(table_, *camera.Registers());
    AddUserSetControl(table_, userSets_);
    AddTransportLayerControl(table_, camera);
    AddEventControl(table_, camera);
    AddChunkDataControl(table_, camera);
    AddTestControl(table_, camera);
    table_.Complete();
}

}  // namespace ZelSim
