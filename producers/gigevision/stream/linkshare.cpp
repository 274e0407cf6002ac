#include "producers/gigevision/stream/linkshare.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "producers/server/base/error.h"
#include "producers/wire/bootstrap.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
using ZelCti::Error;

namespace {

struct AllShares {
    std::mutex mutex;  // guards what follows
    std::vector<const LinkShare*> shares;
};

AllShares& All() {
    static AllShares all;
    return all;
}

// Cameras lack registers, which is no reason not to stream.
std::optional<uint32_t> TryRead(DeviceLink& link, uint32_t address) {
    try {
        return link.ReadRegister(address);
    } catch (const Error&) {
        return std::nullopt;
    }
}

}  // namespace

uint32_t DelayOfShare(size_t packetSize, size_t numStreams, uint32_t linkSpeed,
                      uint32_t cameraSpeed, uint64_t tickFrequency) {
    constexpr uint32_t kUsualSpeed = 1000;
    constexpr double kEthernet = 38;  // bytes around an IP datagram, with the gap to the next one
    constexpr double kBitsPerSpeed = 1e6 / 8;
    const auto time = [&](uint32_t speed, double count) {
        return (static_cast<double>(packetSize) + kEthernet) * count /
               (kBitsPerSpeed * (speed != 0 ? speed : kUsualSpeed));
    };
    const double delay = time(linkSpeed, static_cast<double>(numStreams)) - time(cameraSpeed, 1);
    const double ticks = std::max(delay, 0.0) * static_cast<double>(tickFrequency);
    return static_cast<uint32_t>(std::min<double>(ticks, UINT32_MAX));
}

LinkShare::LinkShare(DeviceLink& link, uint32_t channel, size_t packetSize)
    : link_(link),
      channel_(channel),
      packetSize_(packetSize),
      delayBefore_(TryRead(link, Gev::kScpd.At(channel))) {
    if ((link.Capabilities() & Gev::GvcpCapability::kLinkSpeed) != 0)
        cameraSpeed_ = TryRead(link, Gev::kLinkSpeed.At(0)).value_or(0);
    const std::lock_guard lock(All().mutex);
    All().shares.push_back(this);
    ShareAnew(link.Place());
}

LinkShare::~LinkShare() {
    const std::lock_guard lock(All().mutex);
    auto& shares = All().shares;
    shares.erase(std::find(shares.begin(), shares.end(), this));
    try {
        if (delayBefore_ && !link_.IsLost())
            link_.WriteRegister(Gev::kScpd.At(channel_), *delayBefore_);
    } catch (const Error&) {
        // It keeps its delay.
    }
    ShareAnew(link_.Place());
}

void LinkShare::ShareAnew(const Route& place) {
    std::vector<const LinkShare*> sharing;
    for (const LinkShare* const share : All().shares)
        if (share->link_.Place().interface == place.interface) sharing.push_back(share);
    for (const LinkShare* const share : sharing)
        share->SetDelay(sharing.size());
}

void LinkShare::SetDelay(size_t numStreams) const {
    try {
        if (link_.IsLost()) return;
        link_.WriteRegister(Gev::kScpd.At(channel_),
                            DelayOfShare(packetSize_, numStreams, link_.Place().speed, cameraSpeed_,
                                         link_.TickFrequency()));
    } catch (const Error&) {
        // Not every camera can wait between packets.
    }
}

}  // namespace ZelGev
