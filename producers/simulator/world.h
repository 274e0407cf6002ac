// The simulated hardware.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "producers/simulator/config/config.h"
#include "producers/simulator/hostinterface.h"

namespace ZelSim {

// All interfaces with their cameras: one for the process, whatever number of clients use it. The
// interfaces stay the same, cameras come and go. Thread-safe.
class World {
  public:
    using InterfaceList = std::vector<std::shared_ptr<HostInterface>>;

    explicit World(const WorldConfig& config);

    const std::shared_ptr<const InterfaceList>& Interfaces() const { return interfaces_; }

    // Throws GC_ERR_INVALID_ID for an unknown interface, GC_ERR_RESOURCE_IN_USE when a camera with
    // this identifier is plugged in.
    void Plug(const std::string& interfaceId, CameraConfig camera);

    // Throws GC_ERR_INVALID_ID for an unknown camera.
    std::shared_ptr<Camera> Unplug(const std::string& cameraId);

  private:
    std::mutex plugMutex_;  // held while cameras change, so that identifiers stay unique
    std::shared_ptr<const InterfaceList> interfaces_;
};

}  // namespace ZelSim
