#include "producers/simulator/frame/frameschedule.h"

#include <algorithm>

namespace ZelSim {

void FrameSchedule::Begin(Clock::time_point now) {
    exposureEnd_ = now;
    readoutEnd_ = now;
    pacing_.Restart();
}

FrameSchedule::Clock::time_point FrameSchedule::Earliest(const FrameSettings& next) const {
    return std::max(exposureEnd_, readoutEnd_ - next.Exposure());
}

FrameSchedule::Clock::time_point FrameSchedule::PlanStart(const FrameSettings& next,
                                                          Clock::time_point now) {
    const double rate = next.frameRateEnable ? next.frameRate : 0;
    return std::max(Earliest(next), pacing_.PlanPoint(rate, now));
}

void FrameSchedule::Add(Clock::time_point start, const FrameSettings& settings, bool asPlanned) {
    exposureEnd_ = start + settings.Exposure();
    readoutEnd_ = exposureEnd_ + settings.Readout();
    if (asPlanned) {
        pacing_.Count(start);
    } else {
        pacing_.Restart();
    }
}

}  // namespace ZelSim
