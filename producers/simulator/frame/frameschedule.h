// The times at which a sensor takes frames.
#pragma once

#include <chrono>

#include "producers/simulator/frame/framesettings.h"
#include "producers/simulator/frame/pacing.h"

namespace ZelSim {

// A sensor exposes one frame while it reads out the one before: an exposure begins when the last
// one is over, and ends when the last read-out is over, at the earliest. Times are those of the
// sensor's own clock: a thread that is late does not move them.
class FrameSchedule {
  public:
    using Clock = Pacing::Clock;

    // The sensor is idle: the next frame may begin now.
    void Begin(Clock::time_point now);

    // When the exposure of a frame with these settings can begin.
    Clock::time_point Earliest(const FrameSettings& next) const;

    // Plans when it begins without a trigger.
    Clock::time_point PlanStart(const FrameSettings& next, Clock::time_point now);

    // A frame begins: as planned, or else the pace starts again after it.
    void Add(Clock::time_point start, const FrameSettings& settings, bool asPlanned);

  private:
    Clock::time_point exposureEnd_;  // of the last frame
    Clock::time_point readoutEnd_;
    Pacing pacing_;
};

}  // namespace ZelSim
