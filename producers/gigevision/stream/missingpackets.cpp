#include "producers/gigevision/stream/missingpackets.h"

#include <algorithm>

namespace ZelGev {

void MissingPackets::Reserve(size_t maxGaps) {
    gaps_.reserve(maxGaps);
    maxGaps_ = maxGaps;
}

bool MissingPackets::Add(uint32_t first, uint32_t last, Time due) {
    if (gaps_.size() >= maxGaps_) return false;
    Gap gap;
    gap.first = first;
    gap.last = last;
    gap.due = due;
    gaps_.push_back(gap);
    return true;
}

std::vector<Gap>::const_iterator MissingPackets::From(uint32_t id) const {
    return std::lower_bound(gaps_.begin(), gaps_.end(), id,
                            [](const Gap& gap, uint32_t wanted) { return gap.last < wanted; });
}

bool MissingPackets::Contains(uint32_t id) const {
    const auto found = From(id);
    return found != gaps_.end() && found->first <= id;
}

std::optional<Gap> MissingPackets::Remove(uint32_t id, Time repeatDue) {
    if (!Contains(id)) return std::nullopt;
    const auto gap = gaps_.begin() + (From(id) - gaps_.cbegin());
    const Gap before = *gap;
    if (gap->first == gap->last) {
        gaps_.erase(gap);
        return before;
    }
    if (gap->requests != 0) gap->due = std::max(gap->due, repeatDue);
    if (id == gap->first) {
        ++gap->first;
    } else if (id == gap->last) {
        --gap->last;
    } else {
        if (gaps_.size() >= maxGaps_) return std::nullopt;
        Gap front = *gap;
        front.last = id - 1;
        gap->first = id + 1;
        gaps_.insert(gap, front);
    }
    return before;
}

bool MissingPackets::Split(size_t index, uint64_t count) {
    if (gaps_.size() >= maxGaps_) return false;
    Gap rest = gaps_[index];
    rest.first += static_cast<uint32_t>(count);
    gaps_[index].last = rest.first - 1;
    gaps_.insert(gaps_.begin() + static_cast<ptrdiff_t>(index) + 1, rest);
    return true;
}

void MissingPackets::CutFrom(uint32_t id) {
    while (!gaps_.empty() && gaps_.back().first >= id)
        gaps_.pop_back();
    if (!gaps_.empty()) gaps_.back().last = std::min(gaps_.back().last, id - 1);
}

void MissingPackets::CutTo(uint32_t id) {
    gaps_.erase(gaps_.cbegin(), From(id));
    if (gaps_.empty() || gaps_.front().first > id) return;
    if (gaps_.front().last == id) {
        gaps_.erase(gaps_.begin());
    } else {
        gaps_.front().first = id + 1;
    }
}

Time MissingPackets::Due() const {
    Time due = Time::max();
    for (const Gap& gap : gaps_)
        due = std::min(due, gap.due);
    return due;
}

uint64_t MissingPackets::CountAwaited(Time now) const {
    uint64_t count = 0;
    for (const Gap& gap : gaps_)
        if (gap.requests != 0 && gap.due > now) count += gap.Size();
    return count;
}

}  // namespace ZelGev
