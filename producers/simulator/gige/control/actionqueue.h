// Actions that wait for their time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ZelSim {

// Times are ticks of the camera's clock. Signals are bits. Thread-bound.
template <size_t kSize>
class ActionQueue {
  public:
    // False if the queue is full.
    bool Add(uint64_t time, uint32_t signals) {
        if (count_ == kSize) return false;
        waiting_[count_++] = {time, signals};
        return true;
    }

    // When the next one is due.
    std::optional<uint64_t> Next() const {
        std::optional<uint64_t> next;
        for (size_t i = 0; i < count_; ++i)
            if (!next || waiting_[i].time < *next) next = waiting_[i].time;
        return next;
    }

    // The signals of one that is due by then, the earliest first; none if no other is.
    std::optional<uint32_t> TakeDue(uint64_t now) {
        const std::optional<uint64_t> next = Next();
        if (!next || *next > now) return std::nullopt;
        for (size_t i = 0; i < count_; ++i) {
            if (waiting_[i].time != *next) continue;
            const uint32_t signals = waiting_[i].signals;
            for (--count_; i < count_; ++i)  // those of the same time keep their order
                waiting_[i] = waiting_[i + 1];
            return signals;
        }
        return std::nullopt;
    }

    void Clear() { count_ = 0; }

  private:
    struct Waiting {
        uint64_t time;
        uint32_t signals;
    };

    std::array<Waiting, kSize> waiting_{};
    size_t count_ = 0;
};

}  // namespace ZelSim
