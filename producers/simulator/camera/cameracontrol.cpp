#include "producers/simulator/camera/cameracontrol.h"

#include "producers/server/base/error.h"

namespace ZelSim {

using ZelCti::Claim;
using ZelCti::Error;
using ZelCti::MakeClaim;

CameraControl::CameraControl(const FrameSettings& powerOn)
    : settings_(std::make_shared<const FrameSettings>(powerOn)) {}

std::shared_ptr<const FrameSettings> CameraControl::Settings() const {
    const std::lock_guard lock(mutex_);
    return settings_;
}

void CameraControl::Change(const std::function<void(FrameSettings&)>& change) {
    const auto before = Apply(change, false);
    Notify(*before, *Settings());
}

void CameraControl::ChangeFixed(const std::function<void(FrameSettings&)>& change) {
    const auto before = Apply(change, true);
    Notify(*before, *Settings());
}

// Returns the settings before the change.
std::shared_ptr<const FrameSettings> CameraControl::Apply(
    const std::function<void(FrameSettings&)>& change, bool fixed) {
    const std::lock_guard changing(changeMutex_);
    if (fixed) CheckUnlocked();
    std::shared_ptr<const FrameSettings> before = Settings();
    FrameSettings settings = *before;
    change(settings);
    settings.Adapt();
    if (settings.width > settings.WidthMax() || settings.height == 0 ||
        settings.PayloadSize() > kMaxPayload) {
        throw Error(GenTL::GC_ERR_INVALID_VALUE, "the sensor cannot send such frames");
    }
    auto after = std::make_shared<const FrameSettings>(settings);
    const std::lock_guard lock(mutex_);
    settings_ = std::move(after);
    return before;
}

bool CameraControl::IsLocked() const {
    const std::lock_guard lock(mutex_);
    return lockedByClient_ || lockedForAcquisition_;
}

void CameraControl::CheckUnlocked() const {
    if (!IsLocked()) return;
    throw Error(GenTL::GC_ERR_ACCESS_DENIED,
                "fixed while TLParamsLocked is 1 or the camera acquires");
}

bool CameraControl::IsLockedByClient() const {
    const std::lock_guard lock(mutex_);
    return lockedByClient_;
}

void CameraControl::LockByClient(bool lock) {
    const std::lock_guard changing(changeMutex_);
    const std::lock_guard guard(mutex_);
    lockedByClient_ = lock;
}

Claim CameraControl::LockForAcquisition() {
    const auto lockSettings = [this] {
        const std::lock_guard changing(changeMutex_);
        const std::lock_guard lock(mutex_);
        lockedForAcquisition_ = true;
    };
    return MakeClaim(lockSettings, [this] {
        const std::lock_guard releaseLock(mutex_);
        lockedForAcquisition_ = false;
    });
}

Claim CameraControl::AddListener(Listener listener) {
    const uint64_t number = nextListener_++;
    const auto add = [&] {
        const std::lock_guard lock(listenersMutex_);
        listeners_[number] = std::move(listener);
    };
    return MakeClaim(add, [this, number] {
        const std::lock_guard releaseLock(listenersMutex_);
        listeners_.erase(number);
    });
}

void CameraControl::Notify(const FrameSettings& before, const FrameSettings& after) {
    const std::lock_guard lock(listenersMutex_);
    for (const auto& [number, listener] : listeners_)
        listener(before, after);
}

}  // namespace ZelSim
