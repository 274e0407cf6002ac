// The packets that a block lacks, and when they have to be asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "producers/gigevision/stream/receptionsettings.h"

namespace ZelGev {

// Missing packets with ids in a row.
struct Gap {
    uint32_t first = 0;
    uint32_t last = 0;
    Time due;               // to be asked for
    uint32_t requests = 0;  // made so far
    Time asked;             // the latest of them

    uint64_t Size() const { return uint64_t{last} - first + 1; }
};

// Gaps in the order of their ids. Allocates only in Reserve.
class MissingPackets {
  public:
    void Reserve(size_t maxGaps);
    void Clear() { gaps_.clear(); }

    // A gap behind all others. False when there are as many as there may be.
    bool Add(uint32_t first, uint32_t last, Time due);

    // The packet is there; what is known of its gap. What is left of a gap that was asked for is
    // due at `repeatDue` at the earliest, because it is on its way. None for a packet that is not
    // missing, or when another gap would be one too many: then the whole gap stays.
    std::optional<Gap> Remove(uint32_t id, Time repeatDue);

    // Cuts a gap behind its first `count` packets, which are fewer than it has. False when there
    // are as many gaps as there may be.
    bool Split(size_t index, uint64_t count);
    void RemoveAt(size_t index) { gaps_.erase(gaps_.begin() + static_cast<ptrdiff_t>(index)); }

    // This packet and those behind it do not exist.
    void CutFrom(uint32_t id);
    // This packet and those before it are given up.
    void CutTo(uint32_t id);

    bool IsEmpty() const { return gaps_.empty(); }
    bool Contains(uint32_t id) const;
    // When the first gap is due; Time::max() without any.
    Time Due() const;

    // Packets that were asked for, and are not due again.
    uint64_t CountAwaited(Time now) const;

    size_t NumGaps() const { return gaps_.size(); }
    Gap& operator[](size_t index) { return gaps_[index]; }

  private:
    // The first gap that ends at the id or behind it.
    std::vector<Gap>::const_iterator From(uint32_t id) const;

    std::vector<Gap> gaps_;
    size_t maxGaps_ = 0;
};

}  // namespace ZelGev
