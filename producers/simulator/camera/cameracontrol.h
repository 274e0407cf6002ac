// The settings of a camera, and who may change them.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

#include "producers/server/base/claim.h"
#include "producers/simulator/frame/framesettings.h"

namespace ZelSim {

// The settings of a camera, between the registers that change them and the acquisition that follows
// them. Thread-safe.
class CameraControl {
  public:
    // Learns of a change of the settings. Called by the thread that made it, with no lock of this
    // class that others need; must not wait for frames.
    using Listener = std::function<void(const FrameSettings& before, const FrameSettings& after)>;

    explicit CameraControl(const FrameSettings& powerOn);

    std::shared_ptr<const FrameSettings> Settings() const;

    // Applies `change` to a copy of the settings, brings the rest into its limits and publishes it.
    // Throws what `change` throws, and GC_ERR_INVALID_VALUE for frames of no size or too large
    // ones.
    void Change(const std::function<void(FrameSettings&)>& change);

    // The same for settings that frames depend on: what CheckUnlocked throws.
    void ChangeFixed(const std::function<void(FrameSettings&)>& change);

    // Throws GC_ERR_ACCESS_DENIED while the client has locked such settings (TLParamsLocked) or the
    // camera acquires.
    void CheckUnlocked() const;
    bool IsLocked() const;
    bool IsLockedByClient() const;
    void LockByClient(bool lock);
    ZelCti::Claim LockForAcquisition();  // released with the claim

    // Called until the claim goes; the camera must live longer.
    ZelCti::Claim AddListener(Listener listener);

  private:
    std::shared_ptr<const FrameSettings> Apply(const std::function<void(FrameSettings&)>& change,
                                               bool fixed);
    void Notify(const FrameSettings& before, const FrameSettings& after);

    std::mutex changeMutex_;    // held from the copy of the settings to their publication
    mutable std::mutex mutex_;  // guards what follows; no other is taken under it
    std::shared_ptr<const FrameSettings> settings_;
    bool lockedByClient_ = false;
    bool lockedForAcquisition_ = false;
    std::mutex listenersMutex_;
    std::map<uint64_t, Listener> listeners_;  // guarded by listenersMutex_
    std::atomic<uint64_t> nextListener_{0};
};

}  // namespace ZelSim
