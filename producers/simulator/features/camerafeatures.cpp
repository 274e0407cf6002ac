#include "producers/simulator/features/camerafeatures.h"

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::FeatureTable;
using ZelCti::RegisterSpace;

namespace {

constexpr uint64_t kNsPerMs = 1000000;

}  // namespace

CameraFeatures::CameraFeatures(Camera& camera, RegisterSpace& space, FeatureTable& table)
    : flash_(
          space, [&camera] { return camera.Nanoseconds(); },
          camera.Config().flashBusyTime * kNsPerMs),
      userSets_(camera.Control()) {
    AddDeviceControl(table, camera, userSets_);
    AddImageFormatControl(table, camera);
    AddAcquisitionControl(table, camera);
    AddAnalogControl(table, camera);
    AddDigitalIOControl(table, space);
    AddUserSetControl(table, userSets_);
    AddTransportLayerControl(table, camera);
    AddEventControl(table, camera);
    AddChunkDataControl(table, camera);
    AddTestControl(table, camera);
}

}  // namespace ZelSim
