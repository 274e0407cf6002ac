// What the frames of a simulated 3D camera hold, by the formulas in docs/simulator.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZelTest {

// The lines of the range and of the confidence map of a frame, with `padding` zeros behind each.
inline std::vector<uint8_t> RangeBytes(uint64_t frame, size_t width, size_t height,
                                       size_t padding) {
    std::vector<uint8_t> bytes;
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < width; ++x) {
            const uint64_t value = 2 * x + 3 * y + 16 * frame;
            bytes.push_back(static_cast<uint8_t>(value));
            bytes.push_back(static_cast<uint8_t>(value / 256));
        }
        bytes.insert(bytes.end(), padding, 0);
    }
    return bytes;
}

inline std::vector<uint8_t> ConfidenceBytes(uint64_t frame, size_t width, size_t height,
                                            size_t padding) {
    std::vector<uint8_t> bytes;
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < width; ++x)
            bytes.push_back(static_cast<uint8_t>(x + 5 * y + 7 * frame));
        bytes.insert(bytes.end(), padding, 0);
    }
    return bytes;
}

}  // namespace ZelTest
