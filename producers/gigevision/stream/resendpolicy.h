// How often, and how fast, a camera is asked for packets again.
#pragma once

#include <cstddef>
#include <cstdint>

#include "producers/gigevision/stream/receptionsettings.h"

namespace ZelGev {

class ResendPolicy {
  public:
    explicit ResendPolicy(const ReceptionSettings& settings) : settings_(settings) {}

    // How long an answer to the latest of so many requests for a packet is waited for: twice the
    // usual round trip, and longer each time, because the camera or a network may stand still.
    Duration RepeatDelay(uint32_t requests) const;
    // A packet came so long after it was asked for once.
    void OnAnswer(Duration roundTrip);
    // A packet that was asked for did not come in time.
    void OnSilence(Time now);

    // How many of the packets that are wanted may be asked for now; they are counted. Answers come
    // as fast as the network carries them: there are never more on their way than a small receive
    // buffer takes, fewer when answers get lost; and a network that is nearly full sets the pace.
    uint64_t Grant(uint64_t wanted, size_t packetSize, Time now);
    // When more are granted, at the earliest; with the next answer if IsWaiting.
    Time NextGrant() const { return nextGrant_; }
    bool IsWaiting() const { return isWaiting_; }
    // So many packets are on their way at this moment.
    void SetAwaited(uint64_t count) { awaited_ = count; }

    // The most packets that may be asked for in a block of so many.
    uint64_t MostAsked(uint64_t numPackets) const;

  private:
    static constexpr uint64_t kMostAtOnce = 64;

    ReceptionSettings settings_;
    Duration roundTrip_{};  // smoothed; 0: none known
    // Each packet takes its share of a second: by then those granted so far have had theirs.
    Time spentUntil_{};
    Time nextGrant_{};
    uint64_t awaited_ = 0;
    uint64_t window_ = kMostAtOnce;  // packets on their way at once
    Time narrowedAt_{};
    bool isWaiting_ = false;  // for answers
};

}  // namespace ZelGev
