#include "producers/simulator/features/camerafeatures.h"

#include <utility>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/bootstraprows.h"
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::FeatureTable;
using ZelCti::RegisterSpace;

namespace {

constexpr uint64_t kNsPerMs = 1000000;

void AddNetwork(FeatureTable& table, Camera& camera) {
    BootstrapRows rows(table);
    AddGigEVision(table, rows, camera);
    AddPtpControl(table, rows, camera);
    AddActionControl(table, rows);
}

}  // namespace

CameraFeatures::CameraFeatures(Camera& camera, std::function<void()> powerCycle,
                               RegisterSpace& space, FeatureTable& table)
    : flash_(
          space, [&camera] { return camera.Uptime(); }, camera.Config().flashBusyTime * kNsPerMs,
          camera.Memory().flash),
      files_(camera.Memory().userFile, flash_),
      userSets_(camera.Control(), camera.Memory()) {
    AddDeviceControl(table, camera, std::move(powerCycle));
    AddImageFormatControl(table, camera);
    AddAcquisitionControl(table, camera);
    AddAnalogControl(table, camera);
    AddDigitalIOControl(table, space);
    AddUserSetControl(table, userSets_);
    AddTransportLayerControl(table, camera);
    if (camera.Config().network) AddNetwork(table, camera);
    AddEventControl(table, camera);
    // Where a container has chunks, and how, is not known.
    if (camera.Config().payload != PayloadForm::GenDc) AddChunkDataControl(table, camera);
    AddFileAccessControl(table, space, files_);
    AddTestControl(table, camera);
}

}  // namespace ZelSim
