// What simulated cameras are connected to.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "producers/gigefeatures/gigefeatures.h"
#include "producers/simulator/config/config.h"
#include "producers/simulator/simulatedcamera.h"
#include "producers/transport.h"

namespace ZelSim {

// A network adapter or a USB host, with the cameras that are plugged in at the moment. Thread-safe.
class SimulatedInterface final : public ZelCti::HostInterface,
                                 private ZelCti::GigeHost,
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
    uint64_t MacAddress() const override;
    std::vector<Subnet> Subnets() const override { return {{ip_.address, ip_.mask}}; }
    std::vector<uint32_t> Gateways() const override { return {ip_.gateway}; }
    bool IsTaken(uint32_t address) const override;
    void ForceNetwork(ZelCti::Camera& camera, const ZelCti::CameraNetwork& network,
                      std::chrono::milliseconds timeout) override;

    using CameraList = ZelCti::CameraList;

    std::shared_ptr<SimulatedCamera> MakeCamera(CameraConfig camera, PermanentMemory memory);
    void Replace(SimulatedCamera& camera);
    void CompleteIp(ZelCti::IpSettings& camera);

    const ZelCti::InterfaceInfo info_;
    const ZelCti::IpSettings ip_;  // of the adapter
    mutable std::mutex mutex_;
    uint32_t numPlugged_ = 0;                    // guarded by mutex_; so far
    std::shared_ptr<const CameraList> cameras_;  // guarded by mutex_
};

}  // namespace ZelSim
