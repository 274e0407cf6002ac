#include "producers/simulator/frame/frameschedule.h"

#include <algorithm>

namespace ZelSim {

namespace {

FrameSchedule::Clock::duration PeriodsOf(double rate, uint64_t count) {
    if (rate <= 0) return {};
    const std::chrono::duration<double> seconds(static_cast<double>(count) / rate);
    return std::chrono::duration_cast<FrameSchedule::Clock::duration>(seconds);
}

}  // namespace

void FrameSchedule::Begin(Clock::time_point now) {
    exposureEnd_ = now;
    readoutEnd_ = now;
    isCounting_ = false;
}

FrameSchedule::Clock::time_point FrameSchedule::Earliest(const FrameSettings& next) const {
    return std::max(exposureEnd_, readoutEnd_ - next.Exposure());
}

FrameSchedule::Clock::time_point FrameSchedule::NextStart(const FrameSettings& next,
                                                          Clock::time_point now) {
    const double rate = next.frameRateEnable ? next.frameRate : 0;
    if (!isCounting_ || rate != rate_) {
        base_ = isCounting_ ? std::max(now, last_ + PeriodsOf(rate, 1)) : now;
        count_ = 0;
        rate_ = rate;
        isCounting_ = true;
    }
    return std::max(Earliest(next), base_ + PeriodsOf(rate_, count_));
}

void FrameSchedule::Add(Clock::time_point start, const FrameSettings& settings, bool free) {
    last_ = start;
    exposureEnd_ = start + settings.Exposure();
    readoutEnd_ = exposureEnd_ + settings.Readout();
    if (free) {
        ++count_;
    } else {
        isCounting_ = false;
    }
}

}  // namespace ZelSim
