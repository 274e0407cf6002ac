// What cameras are connected to.
#ifndef ZELSIM_HOSTINTERFACE_H
#define ZELSIM_HOSTINTERFACE_H

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "producers/simulator/answer.h"
#include "producers/simulator/camera.h"
#include "producers/simulator/config.h"

namespace ZelSim {

// The hardware behind the interface modules, a network adapter or a USB host, with the cameras that
// are plugged in at the moment. Thread-safe.
class HostInterface {
  public:
    explicit HostInterface(const InterfaceConfig& config);

    const std::string& Id() const { return config_.id; }
    const InterfaceConfig& Config() const { return config_; }

    std::vector<std::shared_ptr<Camera>> Cameras() const;
    void Plug(CameraConfig camera);
    std::shared_ptr<Camera> Unplug(const std::string& cameraId);  // null when it is not here

    void GetInfo(Answer answer) const;  // interface info commands

  private:
    const InterfaceConfig config_;  // its cameras are those of the beginning
    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<Camera>> cameras_;  // guarded by mutex_
};

}  // namespace ZelSim

#endif  // ZELSIM_HOSTINTERFACE_H
