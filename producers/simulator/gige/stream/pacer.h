// When packets of a stream may leave.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace ZelSim {

// Packets leave at a distance: the time that their data take on the link, and a delay. Times are
// counted from one packet to the next, so that a late thread makes no error that adds up. Threads
// sleep too coarsely for single packets: those of a short time leave together.
class Pacer {
  public:
    using Clock = std::chrono::steady_clock;
    using Duration = std::chrono::nanoseconds;

    // The packets of this time fit into small receive buffers.
    static constexpr Duration kBurst = std::chrono::microseconds(250);

    // A thread that is later than this does not catch up with the rest: it would flood receivers.
    static constexpr Duration kMostLag = std::chrono::milliseconds(5);

    // `linkSpeed` in bytes a second; 0: packets take no time.
    void Set(uint64_t linkSpeed, Duration delay) {
        linkSpeed_ = linkSpeed;
        delay_ = delay;
    }

    // Nothing was to be sent until now.
    void EndIdle(Clock::time_point now) { due_ = std::max(due_, now); }

    // Forgets what cannot be caught up with.
    void Limit(Clock::time_point now) { due_ = std::max(due_, now - kMostLag); }

    bool IsDue(Clock::time_point now) const { return due_ <= now; }

    void Count(size_t dataBytes) {
        constexpr uint64_t kNsPerSecond = 1000000000;
        due_ += delay_;
        if (linkSpeed_ != 0) {
            due_ += Duration(static_cast<int64_t>(dataBytes * kNsPerSecond / linkSpeed_));
        }
    }

    // When a thread should look again: there is a burst by then, or, for a longer delay, a packet.
    Clock::time_point Wake() const { return due_ + (delay_ < kBurst ? kBurst : Duration(0)); }

  private:
    uint64_t linkSpeed_ = 0;
    Duration delay_{0};
    Clock::time_point due_{};  // of the next packet
};

}  // namespace ZelSim
