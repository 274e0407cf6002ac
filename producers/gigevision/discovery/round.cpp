#include "producers/gigevision/discovery/round.h"

#include <algorithm>

namespace ZelGev {

Round::Round(Time now, size_t numExpected, bool canAnswer, Milliseconds longest)
    : start_(now),
      longest_(canAnswer ? now + longest : now),
      nextAsk_(now),
      lastSign_(now),
      numExpected_(numExpected) {}

bool Round::TakeAsk(Time now) {
    if (now < nextAsk_ || IsOver(now)) return false;
    nextAsk_ = now + (numAsks_++ == 0 ? kSecondAsk : kInterval);
    lastSign_ = now;
    return true;
}

void Round::OnAnswer(Time now, bool wasExpected) {
    if (wasExpected && numExpected_ != 0) --numExpected_;
    isAnswered_ = true;
    lastSign_ = now;
}

Time Round::End() const {
    if (!isAnswered_ || numExpected_ != 0 || numAsks_ < 2) return longest_;
    return std::min(longest_, lastSign_ + kSilence);
}

Time Round::NextDeadline() const {
    return std::min(End(), nextAsk_);
}

}  // namespace ZelGev
