#include "producers/gigevision/stream/packetsizesearch.h"

#include <algorithm>

namespace ZelGev {

namespace {

// Cameras that take only some sizes take multiples of this.
constexpr uint32_t kStep = 16;
constexpr uint32_t kMaxTests = 24;

// What networks carry, from the top: one of these is tested when a larger one does not arrive.
constexpr uint32_t kCommonSizes[] = {1500, 576};
constexpr uint32_t kLeast = 256;

constexpr uint32_t RoundedDown(uint32_t size, uint32_t step) {
    return size / step * step;
}

uint32_t FirstSize(PacketSizeSearch::Aim aim, uint32_t present, uint32_t largest) {
    constexpr uint32_t kWord = 4;
    const bool keeps =
        aim == PacketSizeSearch::Aim::Keep && present >= kLeast && present <= largest;
    return keeps ? present : RoundedDown(largest, kWord);
}

}  // namespace

PacketSizeSearch::PacketSizeSearch(Aim aim, uint32_t present, uint32_t largest)
    : lost_(largest + 1), next_(FirstSize(aim, present, largest)) {}

void PacketSizeSearch::OnRefused() {
    const uint32_t size = *next_;
    if (++numTests_ < kMaxTests && size % kStep != 0) {
        next_ = RoundedDown(size, kStep);
        return;
    }
    lost_ = std::min(lost_, size);
    Choose();
}

void PacketSizeSearch::OnTested(uint32_t size, bool arrived) {
    const bool isFirst = numTests_++ == 0;
    // A size that the camera does not take counts as lost, so that the search goes on below it.
    const bool isProgress = arrived && size > arrived_ && size < lost_;
    if (isProgress) arrived_ = size;
    if (!isProgress) lost_ = std::min(lost_, *next_);
    if (isFirst && isProgress) {
        next_.reset();
    } else {
        Choose();
    }
}

void PacketSizeSearch::Choose() {
    next_.reset();
    if (numTests_ >= kMaxTests) return;
    if (arrived_ == 0) {
        for (const uint32_t size : kCommonSizes)
            if (size < lost_) {
                next_ = size;
                return;
            }
        return;
    }
    const uint32_t middle = RoundedDown(arrived_ + (lost_ - arrived_) / 2, kStep);
    if (middle > arrived_) next_ = middle;
}

std::optional<uint32_t> PacketSizeSearch::Result() const {
    if (arrived_ == 0) return std::nullopt;
    return arrived_;
}

}  // namespace ZelGev
