// What cameras are connected to.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "producers/server/base/answer.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/config/config.h"
#include "producers/simulator/config/network.h"

namespace ZelSim {

// The hardware behind the interface modules, a network adapter or a USB host, with the cameras that
// are plugged in at the moment. Thread-safe.
class HostInterface {
  public:
    // `number` tells the networks of the interfaces apart.
    HostInterface(const InterfaceConfig& config, uint32_t number);

    const std::string& Id() const { return config_.id; }
    const InterfaceConfig& Config() const { return config_; }
    const IpSettings& Ip() const { return ip_; }  // of the adapter

    using CameraList = std::vector<std::shared_ptr<Camera>>;

    // The list never changes: another camera makes another list.
    std::shared_ptr<const CameraList> Cameras() const;
    void Plug(CameraConfig camera);
    std::shared_ptr<Camera> Unplug(const std::string& cameraId);  // null when it is not here

    void GetInfo(Answer answer) const;  // interface info commands

  private:
    std::shared_ptr<Camera> MakeCamera(CameraConfig camera);
    void CompleteIp(IpSettings& camera);

    const InterfaceConfig config_;  // its cameras are those of the beginning
    const IpSettings ip_;
    mutable std::mutex mutex_;
    uint32_t numPlugged_ = 0;                    // guarded by mutex_; so far
    std::shared_ptr<const CameraList> cameras_;  // guarded by mutex_
};

}  // namespace ZelSim
