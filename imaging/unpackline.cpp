#include "imaging/unpackline.h"

#include <algorithm>
#include <cstring>

#include "imaging/kernels/kernels.h"

namespace ZelImage::Internal {

namespace {

void UnpackSmall(const uint8_t* line, size_t count, uint32_t depth, uint8_t* out) {
    const size_t perByte = 8 / depth;
    const auto mask = static_cast<uint8_t>((1U << depth) - 1);
    for (size_t i = 0; i < count; ++i)
        out[i] = static_cast<uint8_t>(line[i / perByte] >> (i % perByte * depth)) & mask;
}

// Red or blue, green, and the other of five, six and five bits.
void Unpack565(const uint8_t* line, size_t count, uint8_t* out) {
    for (size_t i = 0; i < count; i += 3, line += 2) {
        const uint32_t word = line[0] | static_cast<uint32_t>(line[1]) << 8;
        out[i] = word & 0x1F;
        out[i + 1] = word >> 5 & 0x3F;
        out[i + 2] = static_cast<uint8_t>(word >> 11);
    }
}

// Three of ten bits in four bytes.
void Unpack10In32(const uint8_t* line, size_t count, uint16_t* out) {
    for (size_t i = 0; i < count; i += 3, line += 4) {
        uint32_t word = line[0] | static_cast<uint32_t>(line[1]) << 8 |
                        static_cast<uint32_t>(line[2]) << 16 | static_cast<uint32_t>(line[3]) << 24;
        for (size_t channel = 0; channel < 3; ++channel, word >>= 10)
            out[i + channel] = word & 0x3FF;
    }
}

}  // namespace

void UnpackLine(const Format& format, const uint8_t* line, size_t count, uint8_t* out) {
    if (format.packing == Packing::LsbFirst) return UnpackSmall(line, count, format.depth, out);
    if (format.packing == Packing::PixelWord) return Unpack565(line, count, out);
    std::memcpy(out, line, count);
    if (format.depth == 8) return;
    const auto white = static_cast<uint8_t>((1U << format.depth) - 1);
    for (size_t i = 0; i < count; ++i)
        out[i] = std::min(out[i], white);
}

void UnpackLine(const Format& format, const uint8_t* line, size_t count, uint16_t* out) {
    const Kernels::Set& kernels = Kernels::Best();
    switch (format.packing) {
        case Packing::LsbFirst:
            return kernels.unpackLsbFirst(line, count, format.depth, out);
        case Packing::GigEVision:
            return kernels.unpackGigEVision(line, count, format.depth, out);
        case Packing::PixelWord:
            return Unpack10In32(line, count, out);
        default:
            return kernels.unpackWords(line, count, format.depth, out);
    }
}

}  // namespace ZelImage::Internal
