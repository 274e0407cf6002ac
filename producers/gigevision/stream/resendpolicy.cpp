#include "producers/gigevision/stream/resendpolicy.h"

#include <algorithm>

namespace ZelGev {

namespace {

// Before an answer was seen. Answers of a busy camera may take a while.
constexpr Duration kFirstRepeatDelay = std::chrono::milliseconds(5);
constexpr int kSmoothing = 8;
// After it, those that did not come are counted anew.
constexpr Duration kLongestWait = std::chrono::milliseconds(1);

// The answers that are on their way at once. The default receive buffer of Linux, 208 KiB, holds
// about four times as much, and other packets come meanwhile.
constexpr size_t kMostBytesAtOnce = 48 << 10;
constexpr uint64_t kFewestAtOnce = 2;

}  // namespace

Duration ResendPolicy::RepeatDelay(uint32_t requests) const {
    const Duration longest = std::max(settings_.retention / 4, settings_.repeatDelay);
    const Duration usual = roundTrip_ == Duration{} ? kFirstRepeatDelay : 2 * roundTrip_;
    const Duration first = std::clamp(usual, settings_.repeatDelay, longest);
    return std::min(first * std::max<uint32_t>(requests, 1), longest);
}

void ResendPolicy::OnAnswer(Duration roundTrip) {
    window_ = std::min(window_ + 1, kMostAtOnce);
    if (roundTrip_ == Duration{}) {
        roundTrip_ = std::max(roundTrip, Duration{1});
    } else {
        roundTrip_ += (roundTrip - roundTrip_) / kSmoothing;
    }
}

void ResendPolicy::OnSilence(Time now) {
    if (now - narrowedAt_ < RepeatDelay(1)) return;
    narrowedAt_ = now;
    window_ = std::max(window_ / 2, kFewestAtOnce);
}

uint64_t ResendPolicy::Grant(uint64_t wanted, size_t packetSize, Time now) {
    constexpr Duration kSecond = std::chrono::seconds(1);
    const Duration share = kSecond / std::max<uint32_t>(settings_.maxAskedPerSecond, 1);
    const uint64_t fitting = packetSize == 0 ? window_ : kMostBytesAtOnce / packetSize;
    const uint64_t atOnce = std::clamp(fitting, kFewestAtOnce, window_);
    spentUntil_ = std::max(spentUntil_, now - static_cast<int64_t>(atOnce) * share);
    const auto affordable = static_cast<uint64_t>(std::max(now - spentUntil_, Duration{}) / share);
    const uint64_t room = atOnce - std::min(atOnce, awaited_);
    const uint64_t granted = std::min({wanted, affordable, room});
    awaited_ += granted;
    spentUntil_ += static_cast<int64_t>(granted) * share;
    isWaiting_ = granted < wanted && granted == room;
    nextGrant_ = isWaiting_ ? now + kLongestWait
                            : spentUntil_ + static_cast<int64_t>(atOnce + 1) / 2 * share;
    return granted;
}

uint64_t ResendPolicy::MostAsked(uint64_t numPackets) const {
    constexpr uint64_t kPercent = 100;
    return std::max<uint64_t>(settings_.minAskedPerFrame,
                              numPackets * settings_.maxAskedPercent / kPercent);
}

}  // namespace ZelGev
