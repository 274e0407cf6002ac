// The simulated hardware.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "producers/simulator/config/config.h"
#include "producers/transport.h"

namespace ZelSim {

// The transport of simulated cameras: all interfaces with their cameras, shared by all clients. The
// interfaces stay the same, cameras come and go. Thread-safe.
class World final : public ZelCti::Transport {
  public:
    explicit World(const WorldConfig& config);

    void UpdateInterfaces(ZelCti::Deadline /*deadline*/) override {}
    std::shared_ptr<const ZelCti::InterfaceList> Interfaces() const override { return interfaces_; }

    // Throws GC_ERR_INVALID_ID for an unknown interface, GC_ERR_RESOURCE_IN_USE when a camera with
    // this identifier is plugged in.
    void Plug(const std::string& interfaceId, CameraConfig camera);

    // Throws GC_ERR_INVALID_ID for an unknown camera.
    void Unplug(const std::string& cameraId);

  private:
    std::mutex plugMutex_;  // held while cameras change, so that identifiers stay unique
    std::shared_ptr<const ZelCti::InterfaceList> interfaces_;  // each is a SimulatedInterface
};

}  // namespace ZelSim
