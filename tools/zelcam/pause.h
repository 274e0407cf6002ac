// Waiting, and when to stop it.
#ifndef ZELCAM_TOOLS_ZELCAM_PAUSE_H
#define ZELCAM_TOOLS_ZELCAM_PAUSE_H

#include <chrono>
#include <cstdint>
#include <string>

// A wait is cut into slices so that Ctrl-C is seen soon: a signal does not end a producer's wait,
// and calling into a producer is not allowed in a signal handler.
constexpr uint64_t sliceMs = 100;

class Deadline {
  public:
    // 0: there is none.
    explicit Deadline(uint64_t fromNowMs)
        : none_(fromNowMs == 0),
          end_(std::chrono::steady_clock::now() + std::chrono::milliseconds(fromNowMs)) {}
    bool Passed() const { return !none_ && std::chrono::steady_clock::now() >= end_; }

  private:
    bool none_;
    std::chrono::steady_clock::time_point end_;
};

// Ends early at Ctrl-C.
void Pause(uint64_t milliseconds);

using WallClock = std::chrono::system_clock;

// The local time of day, for people: "17:04:59.123".
std::string TimeOfDay(WallClock::time_point time);

// Date and time in UTC, for programs: "2026-11-21T16:04:59.123456Z".
std::string TimeStamp(WallClock::time_point time);

#endif  // ZELCAM_TOOLS_ZELCAM_PAUSE_H
