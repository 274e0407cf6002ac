// A camera that a client has open.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "gentl/GenTL.h"
#include "producers/server/base/claim.h"
#include "producers/server/base/object.h"
#include "producers/transport.h"

namespace ZelCti {

class Module;

// What the device module and the modules below it share: the connection to the camera, and the
// right to use it.
//
//   open --the camera is lost--> lost: calls fail, and waits for events end, with GC_ERR_IO
//   open, lost --Close--> closed
//
// The connection stays until the last module goes, for the calls that are under way when another
// thread closes the device. Thread-safe.
class CameraLink final : private CameraSink {
  public:
    // Opens the camera for a client (a system module). Messages go to the device module, which
    // closes the link before it ends. Throws what CameraAccess::Take and Camera::Open throw.
    CameraLink(std::shared_ptr<Camera> camera, GenTL::DEVICE_ACCESS_FLAGS access, Handle client,
               Module& device);
    ~CameraLink() { Close(); }
    CameraLink(const CameraLink&) = delete;
    CameraLink& operator=(const CameraLink&) = delete;

    const Camera& GetCamera() const { return *camera_; }
    Connection& GetConnection() const { return *connection_; }
    bool MayWrite() const { return access_ != GenTL::DEVICE_ACCESS_READONLY; }

    void CheckConnected() const {
        if (lost_.load(std::memory_order_acquire)) ThrowLost();
    }

    // The module hears of the loss of the camera until the claim ends. The link keeps a plain
    // pointer: a shared one might be the last, and the module would end on a thread of the
    // transport.
    Claim Watch(Module& module) const;

    void Close() noexcept;

  private:
    void OnEvent(GenTL::EVENT_TYPE type, uint64_t id, EventData data) override;
    void OnLost(const std::string& reason) override;
    [[noreturn]] void ThrowLost() const;

    const std::shared_ptr<Camera> camera_;
    const GenTL::DEVICE_ACCESS_FLAGS access_;
    Module& device_;
    std::atomic<bool> lost_{false};
    std::string lossReason_;  // does not change once lost_ is set
    std::atomic<bool> closed_{false};
    mutable std::mutex watchedMutex_;
    mutable std::set<Module*> watched_;  // guarded by watchedMutex_
    Claim claim_;                        // until the link is closed
    const std::unique_ptr<Connection> connection_;
};

}  // namespace ZelCti
