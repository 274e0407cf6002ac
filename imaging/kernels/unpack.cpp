// Unpacks components. A vector takes eight of them at once: each component, with what lies beside
// it in its two or three bytes, comes to a lane of its own; there a product moves it to the upper
// end of the lane, which cuts off what lies above, and a shift moves it down again.
#include "imaging/kernels/loops.h"
#include "imaging/kernels/vectors.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

namespace {

constexpr size_t kLanes = 8;

// The component number `index` of those that follow each other without gaps.
uint16_t ComponentAt(const uint8_t* in, size_t index, uint32_t depth) {
    const size_t first = index * depth / 8;
    const size_t last = (index * depth + depth - 1) / 8;
    uint32_t bits = 0;
    for (size_t at = first; at <= last; ++at)
        bits |= static_cast<uint32_t>(in[at]) << (8 * (at - first));
    return static_cast<uint16_t>(bits >> (index * depth % 8) & ((1U << depth) - 1));
}

// How many of `count` components can be unpacked with whole vectors, eight from `groupBytes` bytes.
size_t InVectors(size_t count, size_t groupBytes, size_t bytes) {
    if (bytes < kVectorBytes) return 0;
    const size_t groups = (bytes - kVectorBytes) / groupBytes + 1;
    return groups * kLanes < count ? groups * kLanes : count / kLanes * kLanes;
}

Vector16 Unpack10(Vector8 bytes) {
    const Vector16 lanes = reinterpret_cast<Vector16>(
        __builtin_shufflevector(bytes, bytes, 0, 1, 1, 2, 2, 3, 3, 4, 5, 6, 6, 7, 7, 8, 8, 9));
    return lanes * Vector16{64, 16, 4, 1, 64, 16, 4, 1} >> 6;
}

Vector16 Unpack12(Vector8 bytes) {
    const Vector16 lanes = reinterpret_cast<Vector16>(
        __builtin_shufflevector(bytes, bytes, 0, 1, 1, 2, 3, 4, 4, 5, 6, 7, 7, 8, 9, 10, 10, 11));
    return lanes * Vector16{16, 1, 16, 1, 16, 1, 16, 1} >> 4;
}

// In two halves, as these need up to three bytes.
Vector16 Unpack14(Vector8 bytes) {
    const Vector32 shifts = {0, 6, 4, 2};
    const Vector32 low = reinterpret_cast<Vector32>(
        __builtin_shufflevector(bytes, bytes, 0, 1, 2, 3, 1, 2, 3, 4, 3, 4, 5, 6, 5, 6, 7, 8));
    const Vector32 high = reinterpret_cast<Vector32>(__builtin_shufflevector(
        bytes, bytes, 7, 8, 9, 10, 8, 9, 10, 11, 10, 11, 12, 13, 12, 13, 14, 15));
    const Vector16 evenAndOdd = reinterpret_cast<Vector16>(low >> shifts);
    const Vector16 others = reinterpret_cast<Vector16>(high >> shifts);
    return __builtin_shufflevector(evenAndOdd, others, 0, 2, 4, 6, 8, 10, 12, 14) & 0x3FFF;
}

template <Vector16 (*unpack)(Vector8), size_t depth>
void UnpackBits(const uint8_t* in, size_t count, uint16_t* out) {
    const size_t whole = InVectors(count, depth, (count * depth + 7) / 8);
    for (size_t i = 0; i < whole; i += kLanes)
        Store(unpack(Load<Vector8>(in + i / kLanes * depth)), out + i);
    for (size_t i = whole; i < count; ++i)
        out[i] = ComponentAt(in, i, depth);
}

// Three bytes hold two components: high bits of the first, low bits of both (the first one's in the
// low half), high bits of the second. A last single component has the first two bytes only.
template <uint32_t lowBits>
void UnpackThirds(const uint8_t* in, size_t count, uint16_t* out) {
    constexpr uint16_t kLowMask = (1U << lowBits) - 1;
    constexpr uint16_t kHighMask = static_cast<uint16_t>(0xFF << lowBits);
    constexpr size_t kGroupBytes = kLanes / 2 * 3;
    const size_t whole = InVectors(count, kGroupBytes, (count * 12 + 7) / 8);
    for (size_t i = 0; i < whole; i += kLanes) {
        const auto bytes = Load<Vector8>(in + i / 2 * 3);
        const Vector16 lanes = reinterpret_cast<Vector16>(__builtin_shufflevector(
            bytes, bytes, 1, 0, 1, 2, 4, 3, 4, 5, 7, 6, 7, 8, 10, 9, 10, 11));
        const Vector16 low = lanes * Vector16{16, 1, 16, 1, 16, 1, 16, 1} >> 4;
        Store((lanes >> (8 - lowBits) & kHighMask) | (low & kLowMask), out + i);
    }
    for (size_t i = whole; i < count; ++i) {
        const uint8_t* group = in + i / 2 * 3;
        const uint32_t high = group[i % 2 * 2];
        const uint32_t low = i % 2 == 0 ? group[1] : group[1] >> 4U;
        out[i] = static_cast<uint16_t>(high << lowBits | (low & kLowMask));
    }
}

}  // namespace

void UnpackLsbFirst(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out) {
    if (depth == 10) UnpackBits<Unpack10, 10>(in, count, out);
    if (depth == 12) UnpackBits<Unpack12, 12>(in, count, out);
    if (depth == 14) UnpackBits<Unpack14, 14>(in, count, out);
}

void UnpackGigEVision(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out) {
    if (depth == 10) UnpackThirds<2>(in, count, out);
    if (depth == 12) UnpackThirds<4>(in, count, out);
}

void UnpackWords(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out) {
    memcpy(out, in, count * sizeof *out);
    const auto white = static_cast<uint16_t>((1U << depth) - 1);
    if (depth == 16) return;
    for (size_t i = 0; i < count; ++i)
        out[i] = out[i] < white ? out[i] : white;
}

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
