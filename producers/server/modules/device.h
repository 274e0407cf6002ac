// Device modules.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "producers/server/base/claim.h"
#include "producers/server/modules/cameralink.h"
#include "producers/server/modules/localmodule.h"

namespace ZelCti {

class RemoteDevice;

// A camera that a client has open: the local side, with the streams and the port of the camera
// below it. Thread-safe.
class Device final : public LocalModule {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::Device; }

    // Throws what CameraLink throws.
    Device(const std::shared_ptr<Camera>& camera, GenTL::DEVICE_ACCESS_FLAGS access, Handle client);

    const CameraLink* Link() const override { return link_.get(); }
    void GetInfo(Answer answer) const;

    uint32_t NumStreams() const;
    std::string StreamId(uint32_t index) const;

    static Handle OpenStream(const std::shared_ptr<Device>& device, const char* id);

    // The same handle on each call.
    static Handle OpenRemote(const std::shared_ptr<Device>& device);

  private:
    bool MayWrite() const override { return link_->MayWrite(); }
    std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type) override;
    void AddFeatures(FeatureTable& features) override;
    void OnClose() noexcept override { link_->Close(); }

    void AddInformation(FeatureTable& features);
    void AddStreams(FeatureTable& features);
    void AddLink(FeatureTable& features);
    std::shared_ptr<RemoteDevice> Remote() const;  // null before it is asked for

    const Handle client_;
    const std::shared_ptr<CameraLink> link_;
    const Claim watch_{link_->Watch(*this)};
    ClaimedIds openedStreams_;
    uint32_t selectedStream_ = 0;  // used by registers only
    mutable std::mutex remoteMutex_;
    std::shared_ptr<RemoteDevice> remote_;  // guarded by remoteMutex_; open when it is there
};

}  // namespace ZelCti
