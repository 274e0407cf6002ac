// Simulated cameras on a network.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "producers/simulator/config/config.h"
#include "producers/simulator/gige/networkdevice.h"
#include "producers/simulator/gige/sockets/addresspool.h"

namespace ZelSim {

// Serves all cameras of a configuration, each at an address of its own, until the object ends. They
// are GigE cameras, whatever their interfaces are, and have nothing in common with the cameras of a
// World. Thread-safe.
class NetworkServer {
  public:
    // Throws GC_ERR_INVALID_PARAMETER for a camera whose address is not in the pool, or when the
    // pool has too few, GC_ERR_RESOURCE_IN_USE and GC_ERR_IO when a socket cannot be had.
    NetworkServer(const WorldConfig& config, AddressPool pool, NetworkDevice::Report report);

    // In the order of the configuration; those that are unplugged as well.
    std::vector<std::string> CameraIds() const;

    // Throws GC_ERR_INVALID_ID for an unknown camera, GC_ERR_IO for one that is unplugged.
    std::shared_ptr<NetworkDevice> Device(std::string_view cameraId) const;

    // Where the camera is and who controls it, in words for users.
    std::string Describe(std::string_view cameraId) const;

    // Sets a switch of a camera (NetworkSwitches); one of its address takes the camera there at
    // once. Throws what Device and NetworkSwitches::Set throw, and what the constructor throws for
    // an address.
    void Set(std::string_view cameraId, std::string_view name, std::string_view value);

    // As if its cable was pulled, and put back: it is in its power-on state then. Nothing for a
    // camera that is so already.
    void Unplug(std::string_view cameraId);
    void Plug(std::string_view cameraId);

  private:
    struct Served {
        CameraConfig config;
        ZelCti::HostAddress place;              // where it is or was
        std::shared_ptr<NetworkDevice> device;  // null while unplugged
    };

    void Add(const CameraConfig& config);
    std::shared_ptr<NetworkDevice> Start(const CameraConfig& config,
                                         const ZelCti::HostAddress& place);
    ZelCti::HostAddress PlaceOf(std::string_view cameraId, const ZelCti::IpSettings& ip) const;
    const Served& Find(std::string_view cameraId) const;
    Served& Find(std::string_view cameraId);

    const NetworkDevice::Report report_;
    mutable std::mutex mutex_;
    AddressPool pool_;            // Take is guarded by mutex_
    std::vector<Served> served_;  // guarded by mutex_
};

}  // namespace ZelSim
