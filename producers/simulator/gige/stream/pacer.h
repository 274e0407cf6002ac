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

    // The longest burst; faster links carry so many bytes. Two fit into small receive buffers.
    static constexpr Duration kLongestBurst = std::chrono::microseconds(250);
    static constexpr uint64_t kLargestBurst = 64 << 10;

    // As many bursts leave at once when a thread is late. It does not catch up with the rest: no
    // link would carry that.
    static constexpr int kMostLag = 2;

    // `linkSpeed` in bytes a second; 0: packets take no time.
    void Set(uint64_t linkSpeed, Duration delay) {
        linkSpeed_ = linkSpeed;
        delay_ = delay;
        burst_ = kLongestBurst;
        if (linkSpeed != 0) burst_ = std::min(burst_, TimeOf(kLargestBurst));
    }

    // Nothing was to be sent until now.
    void EndIdle(Clock::time_point now) { due_ = std::max(due_, now); }

    // Forgets what cannot be caught up with.
    void Limit(Clock::time_point now) { due_ = std::max(due_, now - kMostLag * burst_); }

    bool IsDue(Clock::time_point now) const { return due_ <= now; }

    void Count(size_t dataBytes) {
        due_ += delay_;
        if (linkSpeed_ != 0) due_ += TimeOf(dataBytes);
    }

    // When a thread should look again: there is a burst by then, or, for a longer delay, a packet.
    Clock::time_point Wake() const { return due_ + (delay_ < burst_ ? burst_ : Duration(0)); }

  private:
    Duration TimeOf(uint64_t bytes) const {
        constexpr uint64_t kNsPerSecond = 1000000000;
        return Duration(static_cast<int64_t>(bytes * kNsPerSecond / linkSpeed_));
    }

    uint64_t linkSpeed_ = 0;
    Duration delay_{0};
    Duration burst_ = kLongestBurst;
    Clock::time_point due_{};  // of the next packet
};

}  // namespace ZelSim
