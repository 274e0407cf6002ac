// What simulated cameras are connected to.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "producers/simulator/config/config.h"
#include "producers/simulator/simulatedcamera.h"
#include "producers/transport.h"

namespace ZelSim {

// A network adapter or a USB host, with the cameras that are plugged in at the moment. Thread-safe.
class SimulatedInterface final : public ZelCti::HostInterface,
                                 public std::enable_shared_from_this<SimulatedInterface> {
  public:
    // Without the cameras of the configuration. The networks of the interfaces differ by `number`.
    SimulatedInterface(const InterfaceConfig& config, uint32_t number);

    const ZelCti::InterfaceInfo& Info() const override { return info_; }
    void UpdateCameras(ZelCti::Deadline /*deadline*/) override {}
    std::shared_ptr<const ZelCti::CameraList> Cameras() const override;
    void AddFeatures(ZelCti::FeatureTable& features, const SelectedCamera& camera) override;

    void Plug(CameraConfig camera);
    bool Unplug(const std::string& cameraId);  // false when it is not here

  private:
    using CameraList = ZelCti::CameraList;

    std::shared_ptr<SimulatedCamera> MakeCamera(CameraConfig camera, PermanentMemory memory);
    void Replace(SimulatedCamera& camera);
    void CompleteIp(IpSettings& camera);

    const ZelCti::InterfaceInfo info_;
    const IpSettings ip_;  // of the adapter
    mutable std::mutex mutex_;
    uint32_t numPlugged_ = 0;                    // guarded by mutex_; so far
    std::shared_ptr<const CameraList> cameras_;  // guarded by mutex_
};

}  // namespace ZelSim
