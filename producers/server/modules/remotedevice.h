// The remote side of an open camera.
#pragma once

#include <memory>

#include "producers/server/modules/cameralink.h"
#include "producers/server/modules/module.h"

namespace ZelCti {

// The port of the camera itself, which DevGetPort gives. All clients that have the camera open
// share its registers. It has no events: the device module fires what the camera reports.
// Thread-safe.
class RemoteDevice final : public Module {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::RemoteDevice; }

    explicit RemoteDevice(std::shared_ptr<CameraLink> link);

    const CameraLink* Link() const override { return link_.get(); }
    std::vector<PortUrl> Urls() override { return link_->GetConnection().DescriptionUrls(); }

  private:
    bool MayWrite() const override { return link_->MayWrite(); }
    std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE) override { return nullptr; }

    void Read(uint64_t address, void* buffer, size_t size) override {
        link_->GetConnection().Read(address, buffer, size);
    }
    void Write(uint64_t address, const void* buffer, size_t size) override {
        link_->GetConnection().Write(address, buffer, size);
    }

    const std::shared_ptr<CameraLink> link_;
};

}  // namespace ZelCti
