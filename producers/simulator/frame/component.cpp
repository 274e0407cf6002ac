#include "producers/simulator/frame/component.h"

#include <algorithm>

namespace ZelSim {

void DrawRange(uint64_t frame, size_t width, uint8_t* image, size_t pitch, size_t numLines) {
    for (size_t y = 0; y < numLines; ++y) {
        uint8_t* const line = image + y * pitch;
        for (size_t x = 0; x < width; ++x) {
            const uint16_t value = RangeAt(frame, x, y);
            line[2 * x] = static_cast<uint8_t>(value);
            line[2 * x + 1] = static_cast<uint8_t>(value >> 8);
        }
        std::fill(line + 2 * width, line + pitch, uint8_t{0});
    }
}

void DrawConfidence(uint64_t frame, size_t width, uint8_t* image, size_t pitch, size_t numLines) {
    for (size_t y = 0; y < numLines; ++y) {
        uint8_t* const line = image + y * pitch;
        for (size_t x = 0; x < width; ++x)
            line[x] = ConfidenceAt(frame, x, y);
        std::fill(line + width, line + pitch, uint8_t{0});
    }
}

}  // namespace ZelSim
