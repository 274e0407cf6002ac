// Frames at a fixed rate.
#pragma once

#include <chrono>
#include <cstdint>

namespace ZelSim {

// The points in time at which frames with a rate begin. They are counted from a first one, so that
// no error adds up.
class Pacing {
  public:
    using Clock = std::chrono::steady_clock;

    // Plans the next point: the first one is now. Points of another rate are counted from the last
    // frame on. At the rate 0, frames need no distance.
    Clock::time_point PlanPoint(double rate, Clock::time_point now);

    // A frame begins, at the planned point or later.
    void Count(Clock::time_point start);

    // The next point is a first one again.
    void Restart() { isCounting_ = false; }

  private:
    bool isCounting_ = false;
    Clock::time_point base_;  // the first point
    Clock::time_point last_;  // when the last frame began
    uint64_t count_ = 0;      // frames since the first point
    double rate_ = 0;         // their rate
};

}  // namespace ZelSim
