#include "producers/simulator/frame/pacing.h"

#include <algorithm>

namespace ZelSim {

namespace {

Pacing::Clock::duration PeriodsOf(double rate, uint64_t count) {
    if (rate <= 0) return {};
    const std::chrono::duration<double> seconds(static_cast<double>(count) / rate);
    return std::chrono::duration_cast<Pacing::Clock::duration>(seconds);
}

}  // namespace

Pacing::Clock::time_point Pacing::PlanPoint(double rate, Clock::time_point now) {
    if (!isCounting_ || rate != rate_) {
        base_ = isCounting_ ? std::max(now, last_ + PeriodsOf(rate, 1)) : now;
        count_ = 0;
        rate_ = rate;
        isCounting_ = true;
    }
    return base_ + PeriodsOf(rate_, count_);
}

void Pacing::Count(Clock::time_point start) {
    last_ = start;
    ++count_;
}

}  // namespace ZelSim
