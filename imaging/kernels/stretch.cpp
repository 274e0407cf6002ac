// Scales components to another full scale. Full scales are constants here, as the compiler replaces
// a division by a constant with a product.
#include "imaging/kernels/loops.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

namespace {

template <uint32_t depth, uint32_t toDepth, typename From, typename To>
void Stretch(const From* in, size_t count, To* out) {
    constexpr uint32_t kFrom = (1U << depth) - 1;
    constexpr uint32_t kTo = (1U << toDepth) - 1;
    for (size_t i = 0; i < count; ++i)
        out[i] = static_cast<To>((in[i] * kTo + kFrom / 2) / kFrom);
}

// For depths of which the target is a multiple.
template <uint32_t toDepth, typename To>
void Multiply(const uint8_t* in, size_t count, uint32_t depth, To* out) {
    const auto factor = static_cast<To>(((1U << toDepth) - 1) / ((1U << depth) - 1));
    for (size_t i = 0; i < count; ++i)
        out[i] = static_cast<To>(in[i] * factor);
}

}  // namespace

void StretchTo8(const uint8_t* in, size_t count, uint32_t depth, uint8_t* out) {
    Multiply<8>(in, count, depth, out);
}

void WidenTo16(const uint8_t* in, size_t count, uint32_t depth, uint16_t* out) {
    Multiply<16>(in, count, depth, out);
}

void NarrowTo8(const uint16_t* in, size_t count, uint32_t depth, uint8_t* out) {
    if (depth == 10) Stretch<10, 8>(in, count, out);
    if (depth == 12) Stretch<12, 8>(in, count, out);
    if (depth == 14) Stretch<14, 8>(in, count, out);
    if (depth == 16) Stretch<16, 8>(in, count, out);
}

void StretchTo16(const uint16_t* in, size_t count, uint32_t depth, uint16_t* out) {
    if (depth == 10) Stretch<10, 16>(in, count, out);
    if (depth == 12) Stretch<12, 16>(in, count, out);
    if (depth == 14) Stretch<14, 16>(in, count, out);
}

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
