// Waiting that Ctrl-C can end, and deadlines.
#pragma once

#include <chrono>
#include <cstdint>

namespace ZelTool {

// Waits are cut into slices, so that the program notices Ctrl-C soon: a signal does not end a
// producer's wait, and a signal handler may not call a producer.
constexpr uint64_t kSliceMs = 100;

class Deadline {
  public:
    // 0: never.
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

}  // namespace ZelTool
