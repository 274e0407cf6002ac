// The part of a network link that each of several streams gets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "producers/gigevision/base/devicelink.h"

namespace ZelGev {

// How long a camera waits after each packet, in ticks of its clock, so that so many streams fill a
// link together. Speeds are in Mbit/s, those of the link and of the camera's own one; 0: not known,
// and 1 Gbit/s is taken for it. Reentrant.
uint32_t DelayOfShare(size_t packetSize, size_t numStreams, uint32_t linkSpeed,
                      uint32_t cameraSpeed, uint64_t tickFrequency);

// A stream that shares the link of a network adapter with the others of this process that do so.
// Whenever one comes or goes, the cameras of all get other delays between packets (SCPD), but
// for those that cannot wait. A stream that goes leaves the delay that it found. Reentrant.
class LinkShare {
  public:
    // The link outlives the share.
    LinkShare(DeviceLink& link, uint32_t channel, size_t packetSize);
    ~LinkShare();
    LinkShare(const LinkShare&) = delete;
    LinkShare& operator=(const LinkShare&) = delete;

  private:
    void SetDelay(size_t numStreams) const;

    // The caller has the mutex of all shares.
    static void ShareAnew(const Route& place);

    DeviceLink& link_;
    const uint32_t channel_;
    const size_t packetSize_;
    uint32_t cameraSpeed_ = 0;
    std::optional<uint32_t> delayBefore_;  // none when the camera cannot wait between packets
};

}  // namespace ZelGev
