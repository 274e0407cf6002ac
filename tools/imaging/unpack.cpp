#include "tools/imaging/unpack.h"

#include <algorithm>

namespace Imaging {
namespace {

void UnpackWords(const uint8_t* line, size_t count, uint32_t fullScale, uint16_t* out) {
    for (size_t i = 0; i < count; ++i) {
        const uint32_t word = line[2 * i] | static_cast<uint32_t>(line[2 * i + 1]) << 8;
        out[i] = static_cast<uint16_t>(std::min(word, fullScale));
    }
}

// Takes bytes in only when their bits are needed, and so never one behind the line.
void UnpackLsbFirst(const uint8_t* line, size_t count, uint32_t depth, uint16_t* out) {
    uint32_t bits = 0;
    uint32_t have = 0;
    for (size_t i = 0; i < count; ++i) {
        for (; have < depth; have += 8)
            bits |= static_cast<uint32_t>(*line++) << have;
        out[i] = static_cast<uint16_t>(bits & ((1U << depth) - 1));
        bits >>= depth;
        have -= depth;
    }
}

// Three bytes hold two components: high bits of the first, low bits of both (the first one's in the
// low half), high bits of the second. A last single component has the first two bytes only.
void UnpackGigEVision(const uint8_t* line, size_t count, uint32_t depth, uint16_t* out) {
    const uint32_t lowBits = depth - 8;
    const uint32_t lowMask = (1U << lowBits) - 1;
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* group = line + i / 2 * 3;
        const bool second = i % 2 != 0;
        const uint32_t high = group[second ? 2 : 0];
        const uint32_t low = (second ? group[1] >> 4 : group[1]) & lowMask;
        out[i] = static_cast<uint16_t>(high << lowBits | low);
    }
}

}  // namespace

void UnpackLine(const PixelFormat& format, const uint8_t* line, size_t count, uint16_t* out) {
    switch (format.packing) {
        case Packing::Bytes:
            std::copy(line, line + count, out);
            break;
        case Packing::Words:
            UnpackWords(line, count, (1U << format.depth) - 1, out);
            break;
        case Packing::LsbFirst:
            UnpackLsbFirst(line, count, format.depth, out);
            break;
        case Packing::GigEVision:
            UnpackGigEVision(line, count, format.depth, out);
            break;
    }
}

}  // namespace Imaging
