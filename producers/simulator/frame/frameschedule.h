// The times at which a sensor takes frames.
#pragma once

#include <chrono>
#include <cstdint>

#include "producers/simulator/frame/framesettings.h"

namespace ZelSim {

// A sensor exposes one frame while it reads out the one before: an exposure begins when the last
// one is over, and ends when the last read-out is over, at the earliest. Frames with a rate begin
// at fixed points, counted from a first one so that no error adds up. Times are those of the
// sensor's own clock: a thread that is late does not move them.
class FrameSchedule {
  public:
    using Clock = std::chrono::steady_clock;

    // The sensor is idle: the next frame may begin now.
    void Begin(Clock::time_point now);

    // When the exposure of a frame with these settings can begin.
    Clock::time_point Earliest(const FrameSettings& next) const;

    // When it begins without a trigger; settings with another rate count from the last frame on.
    Clock::time_point NextStart(const FrameSettings& next, Clock::time_point now);

    // A frame begins: one from NextStart, or else the points are counted anew after it.
    void Add(Clock::time_point start, const FrameSettings& settings, bool free);

  private:
    Clock::time_point exposureEnd_;  // of the last frame
    Clock::time_point readoutEnd_;
    Clock::time_point last_;  // when it began
    bool isCounting_ = false;
    Clock::time_point base_;  // when frame 0 of those that are counted begins
    uint64_t count_ = 0;      // frames from then on
    double rate_ = 0;         // their rate; 0: as fast as the sensor allows
};

}  // namespace ZelSim
