#include "tools/zelcam/console/progress.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>
#include <utility>

namespace ZelTool {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstAfter{500};
constexpr milliseconds kRedrawnAfter{200};
constexpr uint64_t kBarWidth = 30;

std::string Bar(uint64_t done, uint64_t total) {
    const uint64_t filled = std::min(done, total) * kBarWidth / total;
    return "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] ";
}

// Without a stream, whose lock could be held when another thread forks.
void WriteLine(const std::string& text) {
    const std::string line = "\r\x1b[K" + text;
    (void)!write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace

LiveLine::LiveLine(std::function<std::string(unsigned)> text) : text_(std::move(text)) {
    if (isatty(STDERR_FILENO) != 0) thread_ = std::thread([this] { Run(); });
}

LiveLine::~LiveLine() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    ending_.notify_one();
    thread_.join();
    if (isShown_) WriteLine("");
}

void LiveLine::Print(const std::function<void()>& print) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isShown_, false)) WriteLine("");
    print();
}

void LiveLine::Run() {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    std::unique_lock lock(mutex_);
    milliseconds pause = kFirstAfter;
    while (!ending_.wait_for(lock, pause, [this] { return ended_; })) {
        const auto passed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start);
        WriteLine(text_(static_cast<unsigned>(passed.count())));
        isShown_ = true;
        pause = kRedrawnAfter;
    }
}

std::function<std::string(unsigned)> Waiting(const std::string& what) {
    return [what](unsigned seconds) { return what + ", " + std::to_string(seconds) + " s"; };
}

GrabProgress::GrabProgress(uint64_t total)
    : total_(total), line_([this](unsigned seconds) { return Text(seconds); }) {}

std::string GrabProgress::Text(unsigned seconds) const {
    const uint64_t frames = frames_;
    if (frames == 0) return Waiting("waiting for the first frame")(seconds);
    const std::string count =
        total_ == 0 ? std::to_string(frames) + " frames"
                    : Bar(frames, total_) + std::to_string(frames) + "/" + std::to_string(total_);
    return Waiting(count)(seconds);
}

}  // namespace ZelTool
