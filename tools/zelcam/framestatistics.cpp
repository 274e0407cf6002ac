#include "tools/zelcam/framestatistics.h"

namespace {

uint64_t Missing(uint64_t lastId, uint64_t id) {
    if (id > lastId) return id - lastId - 1;
    // The last and the first quarter of the 16-bit numbers: a wrap with a gap around it.
    const bool wrapped = lastId >= 0xC000 && lastId <= 0xFFFF && id < 0x4000 && id > 0;
    return wrapped ? 0xFFFF - lastId + id - 1 : 0;
}

}  // namespace

void FrameStatistics::Add(uint64_t frameId, bool incomplete, Clock::time_point when) {
    if (frames_ == 0) {
        first_ = when;
    } else {
        lost_ += Missing(lastId_, frameId);
    }
    lastId_ = frameId;
    last_ = when;
    ++frames_;
    if (incomplete) ++incomplete_;
}

double FrameStatistics::Seconds() const {
    return std::chrono::duration<double>(last_ - first_).count();
}

double FrameStatistics::FramesPerSecond() const {
    const double seconds = Seconds();
    return frames_ < 2 || seconds <= 0 ? 0 : static_cast<double>(frames_ - 1) / seconds;
}
