// Decisions that an input makes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

namespace Fuzz {

// The bytes of an input one after the other, and when they are over, numbers that follow from them:
// a short input makes as many decisions as a long one, and each the same whenever it runs. The
// bytes must outlive the object.
class Choices {
  public:
    Choices(const uint8_t* data, size_t size, uint64_t seed = 1)
        : next_(data), end_(data + size), state_(seed) {
        for (size_t i = 0; i < size; ++i)
            state_ = (state_ ^ data[i]) * 0x100000001B3U;
    }

    // A number below `count`, which must not be 0.
    size_t Below(size_t count) {
        if (count <= 256) return Byte() % count;
        size_t number = 0;
        for (int i = 0; i < 4; ++i)
            number = number << 8 | Byte();
        return number % count;
    }

    bool OneIn(size_t count) { return Below(count) == 0; }

    uint8_t Byte() {
        if (next_ != end_) return *next_++;
        state_ += 0x9E3779B97F4A7C15U;
        uint64_t mixed = (state_ ^ state_ >> 30) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
        return static_cast<uint8_t>(mixed >> 56);
    }

    // One at which something is different, or near one.
    int64_t Number() {
        using Limits = std::numeric_limits<int64_t>;
        constexpr int64_t kEdges[] = {0,
                                      1,
                                      2,
                                      4,
                                      7,
                                      8,
                                      31,
                                      32,
                                      33,
                                      63,
                                      64,
                                      100,
                                      255,
                                      256,
                                      1000,
                                      4096,
                                      -1,
                                      -2,
                                      -64,
                                      1000,
                                      65535,
                                      65536,
                                      INT32_MAX,
                                      INT32_MIN,
                                      UINT32_MAX,
                                      Limits::max(),
                                      Limits::min()};
        const int64_t edge = kEdges[Below(sizeof kEdges / sizeof *kEdges)];
        return OneIn(4) ? static_cast<int64_t>(static_cast<uint64_t>(edge) + Byte() - 128U) : edge;
    }

  private:
    const uint8_t* next_;
    const uint8_t* end_;
    uint64_t state_;
};

}  // namespace Fuzz
