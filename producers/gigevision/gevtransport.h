// GigE Vision cameras on the network adapters of this machine.
#pragma once

#include <memory>
#include <mutex>

#include "producers/gigevision/discovery/discovery.h"
#include "producers/gigevision/gevinterface.h"
#include "producers/transport.h"

namespace ZelGev {

// An interface for each adapter that is up, in the order of the system. Thread-safe.
class GevTransport final : public ZelCti::Transport {
  public:
    explicit GevTransport(DiscoverySettings settings);

    // The transport that the environment asks for: on the adapters that ZELGEV_INTERFACES names,
    // without it on all, where the addresses in ZELGEV_DEVICES are asked as well. Null for "none".
    static std::shared_ptr<GevTransport> OfEnvironment();

    void UpdateInterfaces(ZelCti::Deadline deadline) override;
    std::shared_ptr<const ZelCti::InterfaceList> Interfaces() const override;

  private:
    ZelCti::InterfaceList ListInterfaces() const;

    const std::shared_ptr<Discovery> discovery_;
    const std::shared_ptr<CameraObjects> objects_ = std::make_shared<CameraObjects>();
    mutable std::mutex mutex_;
    std::shared_ptr<const ZelCti::InterfaceList> interfaces_;  // guarded by mutex_
};

}  // namespace ZelGev
