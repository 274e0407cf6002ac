// When cameras are asked for, and when no further answer is to be expected.
#pragma once

#include <chrono>
#include <cstdint>

namespace ZelGev {

using Time = std::chrono::steady_clock::time_point;

// One search on a network adapter: asks twice and then again at intervals, because datagrams get
// lost. It ends early when all known cameras and at least one have answered, and then none for a
// while after the latest question. Pure.
class Round {
  public:
    using Milliseconds = std::chrono::milliseconds;
    static constexpr Milliseconds kSecondAsk{30};
    static constexpr Milliseconds kInterval{250};
    static constexpr Milliseconds kSilence{100};
    // Cameras may wait for up to a second before they answer; programs on this machine do not.
    static constexpr Milliseconds kLongest{1000};
    static constexpr Milliseconds kLongestHere{400};

    Round() = default;  // one that is over
    // `numExpected` cameras are known. `canAnswer` is false where nobody can be asked. Without
    // answers the round takes `longest`.
    Round(Time now, size_t numExpected, bool canAnswer, Milliseconds longest = kLongest);

    // Whether to ask now; then the next question is later.
    bool TakeAsk(Time now);

    void OnAnswer(Time now, bool wasExpected);

    bool IsOver(Time now) const { return now >= End(); }
    Time Start() const { return start_; }
    Time NextDeadline() const;  // when it has to be looked at again

  private:
    Time End() const;

    Time start_;
    Time longest_;  // the end without answers
    Time nextAsk_;
    Time lastSign_;  // the latest question or answer
    size_t numExpected_ = 0;
    size_t numAsks_ = 0;
    bool isAnswered_ = false;
};

}  // namespace ZelGev
