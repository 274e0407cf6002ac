#include "tools/zelcam/progress.h"

#include <chrono>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

constexpr uint64_t barWidth = 30;

std::string Bar(uint64_t done, uint64_t total) {
    const uint64_t filled = done * barWidth / total;
    return "[" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] ";
}

}  // namespace

Progress::Progress(uint64_t total) : total_(total), shown_(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
    if (shown_) std::fputs("\r\x1b[K", stderr);
}

void Progress::Update(const FrameStatistics& statistics) {
    const auto now = FrameStatistics::Clock::now();
    if (!shown_ || now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    const std::string count = std::to_string(statistics.Frames()) +
                              (total_ == 0 ? " frames" : "/" + std::to_string(total_));
    const std::string bar = total_ == 0 ? "" : Bar(statistics.Frames(), total_);
    std::fprintf(stderr, "\r\x1b[K%s%s  %.1f per second", bar.c_str(), count.c_str(),
                 statistics.FramesPerSecond());
}
