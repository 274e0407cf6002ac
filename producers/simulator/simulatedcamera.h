// A simulated camera as the server side sees it.
#pragma once

#include <memory>
#include <string>

#include "producers/server/registers/portregisters.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/camerafeatures.h"
#include "producers/transport.h"

namespace ZelSim {

// The hardware with its features and their description; every connection works with the same
// object. Thread-safe.
class SimulatedCamera final : public ZelCti::Camera,
                              public std::enable_shared_from_this<SimulatedCamera> {
  public:
    SimulatedCamera(CameraConfig config, const std::string& tlType);

    ZelSim::Camera& Hardware() { return hardware_; }

    // The port of the camera.
    ZelCti::PortRegisters& Registers() { return registers_; }

    const ZelCti::CameraInfo& Info() const override { return info_; }
    std::string UserName() const override { return hardware_.UserName(); }
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const override;
    std::unique_ptr<ZelCti::Connection> Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                             ZelCti::CameraSink& sink) override;

  private:
    std::unique_ptr<const ZelCti::Description> MakeRegisters(ZelCti::RegisterSpace& space);

    const ZelCti::CameraInfo info_;
    ZelSim::Camera hardware_;
    std::unique_ptr<CameraFeatures> features_;  // since the registers are made
    ZelCti::PortRegisters registers_;
};

}  // namespace ZelSim
