#include "producers/server/modules/cameralink.h"

#include "producers/server/base/error.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/module.h"

namespace ZelCti {

namespace {

constexpr uint64_t kModuleEventLost = 1;  // the data are the reason, a text

}  // namespace

CameraLink::CameraLink(std::shared_ptr<Camera> camera, GenTL::DEVICE_ACCESS_FLAGS access,
                       Handle client, Module& device)
    : camera_(std::move(camera)),
      access_(access),
      device_(device),
      claim_(Library::Instance().Access().Take(*camera_, access, client)),
      connection_(camera_->Open(access, *this)) {}

// The camera is free only when the transport has let go of it.
void CameraLink::Close() noexcept {
    if (closed_.exchange(true)) return;
    connection_->Close();
    claim_.reset();
}

void CameraLink::OnEvent(GenTL::EVENT_TYPE type, uint64_t id, EventData data) {
    device_.FireMessage(type, id, data);
}

Claim CameraLink::Watch(Module& module) const {
    const auto take = [&] {
        const std::lock_guard lock(watchedMutex_);
        watched_.insert(&module);
    };
    return MakeClaim(take, [this, &module] {
        const std::lock_guard lock(watchedMutex_);
        watched_.erase(&module);
    });
}

void CameraLink::OnLost(const std::string& reason) {
    lossReason_ = reason;
    lost_ = true;
    Library::Instance().Access().Forget(*camera_);
    device_.FireMessage(GenTL::EVENT_MODULE, kModuleEventLost, {reason.c_str(), reason.size() + 1});
    const std::lock_guard lock(watchedMutex_);
    for (Module* const module : watched_)
        module->OnCameraLost();
}

void CameraLink::ThrowLost() const {
    throw Error(GenTL::GC_ERR_IO, camera_->Id() + " " + lossReason_);
}

}  // namespace ZelCti
