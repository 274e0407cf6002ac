// A camera on a network, as discovery knows it.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "producers/gigevision/discovery/discovery.h"
#include "producers/transport.h"

namespace ZelGev {

// Thread-safe.
class GevCamera final : public ZelCti::Camera, public std::enable_shared_from_this<GevCamera> {
  public:
    explicit GevCamera(const ListedCamera& listed);

    // Takes what another search has found.
    void Update(const ListedCamera& listed);

    // Whether this is the camera that was found, and still is. Another firmware makes it another
    // one, because its registers may be others.
    bool Is(const FoundCamera& found) const;

    const ZelCti::CameraInfo& Info() const override { return info_; }
    std::string UserName() const override;
    uint64_t TimestampFrequency() const override;
    std::optional<ZelCti::CameraNetwork> Network() const override;
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const override;
    std::string AccessReason() const override;
    std::unique_ptr<ZelCti::Connection> Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                             ZelCti::CameraSink& sink) override;

  private:
    class Use;

    struct Access {
        GenTL::DEVICE_ACCESS_STATUS status = GenTL::DEVICE_ACCESS_STATUS_READWRITE;
        std::string reason;
    };

    Access AccessNow() const;
    Access AccessFrom(const CameraReading& reading) const;
    std::string WhyUnreachable() const;
    void OnLost(const std::string& reason);

    const ZelCti::CameraInfo info_;
    mutable std::mutex mutex_;    // guards what follows
    FoundCamera found_;           // as it was found last
    std::string adapter_;         // on which it was found
    std::optional<Route> route_;  // none: it cannot be reached
    uint64_t ticksPerSecond_ = 0;
    Access access_;                     // of other programs, when it was found last
    std::string lossReason_;            // empty: it is not lost
    std::weak_ptr<const Use> lastUse_;  // the latest one that controls it
};

}  // namespace ZelGev
