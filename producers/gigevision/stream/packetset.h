// A set of packets of a block.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZelGev {

class PacketSet {
  public:
    void Reserve(uint32_t largest) { words_.reserve(largest / kWordBits + size_t{1}); }

    // Empty, for ids up to the largest one. Allocates only for more of them than ever before.
    void Reset(uint32_t largest) {
        largest_ = largest;
        count_ = 0;
        words_.assign(largest / kWordBits + size_t{1}, 0);
    }

    bool Contains(uint32_t id) const {
        return id <= largest_ && (words_[id / kWordBits] & Bit(id)) != 0;
    }

    void Insert(uint32_t id) {
        assert(id <= largest_ && !Contains(id));
        words_[id / kWordBits] |= Bit(id);
        ++count_;
    }

    uint32_t Count() const { return count_; }

  private:
    static constexpr uint32_t kWordBits = 64;
    static uint64_t Bit(uint32_t id) { return uint64_t{1} << id % kWordBits; }

    uint32_t largest_ = 0;
    uint32_t count_ = 0;
    std::vector<uint64_t> words_{0};
};

}  // namespace ZelGev
