// Ctrl-C, and waiting that it can end.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace ZelTool {

// Installs handlers. They only note the first SIGINT, SIGTERM or SIGHUP, so that a command can stop
// the camera and clean up. The second signal ends the program at once, with a message, and removes
// the watched files: a call into a producer may never return.
void NoteInterrupts();

bool Interrupted();

// Throws Failure (Interrupted) after the first signal.
void EndIfInterrupted();

// Waits are cut into slices, so that the program notices Ctrl-C soon: a signal does not end a
// producer's wait, and a signal handler may not call a producer.
constexpr uint64_t kSliceMs = 100;

// Ends early at Ctrl-C.
void Pause(uint64_t milliseconds);

class Deadline {
  public:
    using Clock = std::chrono::steady_clock;

    // 0: never.
    explicit Deadline(uint64_t fromNowMs)
        : end_(fromNowMs == 0 ? Clock::time_point::max()
                              : Clock::now() + std::chrono::milliseconds(fromNowMs)) {}

    bool Passed() const { return Clock::now() >= end_; }

  private:
    Clock::time_point end_;
};

// An unfinished file that the second signal removes. In every other case its owner removes it.
class RemovedWhenInterrupted {
  public:
    RemovedWhenInterrupted() = default;
    ~RemovedWhenInterrupted() { Forget(); }
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;

    // Does nothing when too many files are watched or the name is too long.
    void Watch(const std::string& name);
    void Forget();

  private:
    size_t place_ = 0;  // in the table of watched files, from 1; 0: not watched
};

}  // namespace ZelTool
