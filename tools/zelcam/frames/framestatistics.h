// Counts frames: received, incomplete and lost.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace ZelTool {

// Counts frames as they arrive.
class FrameStatistics {
  public:
    using Clock = std::chrono::steady_clock;

    void Add(uint64_t frameId, bool incomplete, Clock::time_point when);

    uint64_t Frames() const { return frames_; }
    uint64_t Incomplete() const { return incomplete_; }

    // Frames that are certainly lost, by the numbers that the camera gives them: gaps between
    // complete frames, minus the incomplete frames in between. The number of an incomplete frame
    // may be wrong and is not used. A counter of 16 or 64 bits wraps from its last number to 1. Any
    // other number that goes back means that the camera has started to count again.
    uint64_t Lost() const { return lost_; }

    // From the first frame to the last.
    double Seconds() const;
    double FramesPerSecond() const;  // 0 for fewer than two frames

  private:
    uint64_t frames_ = 0;
    uint64_t incomplete_ = 0;
    uint64_t lost_ = 0;
    std::optional<uint64_t> lastId_;  // of the last complete frame
    uint64_t incompleteSinceId_ = 0;
    Clock::time_point first_;
    Clock::time_point last_;
};

}  // namespace ZelTool
