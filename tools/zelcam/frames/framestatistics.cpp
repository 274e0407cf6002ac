#include "tools/zelcam/frames/framestatistics.h"

#include <algorithm>

namespace ZelTool {

namespace {

// A longer gap at the end of a counter means that the camera has started to count again.
constexpr uint64_t kLongestGapAtWrap = 1000;

// How many numbers are missing between two consecutive ones.
uint64_t NumbersBetween(uint64_t before, uint64_t id) {
    if (id > before) return id - before - 1;
    for (const uint64_t last : {uint64_t{0xFFFF}, ~uint64_t{0}}) {
        if (before > last || id == 0) continue;
        const uint64_t between = last - before + id - 1;
        if (between <= kLongestGapAtWrap) return between;
    }
    return 0;
}

}  // namespace

void FrameStatistics::Add(uint64_t frameId, bool incomplete, Clock::time_point when) {
    if (frames_ == 0) first_ = when;
    last_ = when;
    ++frames_;
    if (incomplete) {
        ++incomplete_;
        ++incompleteSinceId_;
        return;
    }
    if (lastId_) {
        const uint64_t between = NumbersBetween(*lastId_, frameId);
        lost_ += between - std::min(between, incompleteSinceId_);
    }
    lastId_ = frameId;
    incompleteSinceId_ = 0;
}

double FrameStatistics::Seconds() const {
    return std::chrono::duration<double>(last_ - first_).count();
}

double FrameStatistics::FramesPerSecond() const {
    const double seconds = Seconds();
    return frames_ < 2 || seconds <= 0 ? 0 : static_cast<double>(frames_ - 1) / seconds;
}

}  // namespace ZelTool
