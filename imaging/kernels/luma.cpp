// Luma and chroma as red, green and blue, and luma of these.
#include "imaging/kernels/loops.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

namespace {

template <typename Sample>
void Luma(const Sample* red, const Sample* green, const Sample* blue, size_t count, Sample* out) {
    // 0.299, 0.587 and 0.114 of 65536; with the rounding, full scale of 16 bits just fits.
    for (size_t i = 0; i < count; ++i) {
        out[i] = static_cast<Sample>(
            (19595U * red[i] + 38470U * green[i] + 7471U * blue[i] + 32768U) >> 16);
    }
}

// Rounded, within the full scale of `To`.
template <typename To>
To Clamp(float value) {
    constexpr int kWhite = sizeof(To) == 1 ? 255 : 65535;
    // No vectors come of lround.
    int rounded = static_cast<int>(value + 0.5F);  // NOLINT(bugprone-incorrect-roundings)
    rounded = rounded < 0 ? 0 : rounded;
    return static_cast<To>(rounded > kWhite ? kWhite : rounded);
}

// The lines do not overlap, which the compiler believes of parameters only.
template <typename From, typename To>
void ConvertPixels(const From* __restrict luma, const From* __restrict chromaU,
                   const From* __restrict chromaV, size_t count, const YuvFactors& factors,
                   To* __restrict red, To* __restrict green, To* __restrict blue) {
    const YuvFactors by = factors;  // bytes that are stored could be part of the other
    for (size_t i = 0; i < count; ++i) {
        const float y = (static_cast<float>(luma[i]) - by.black) * by.luma;
        const float u = static_cast<float>(chromaU[i]) - by.neutral;
        const float v = static_cast<float>(chromaV[i]) - by.neutral;
        red[i] = Clamp<To>(y + by.redOfV * v);
        green[i] = Clamp<To>(y + by.greenOfU * u + by.greenOfV * v);
        blue[i] = Clamp<To>(y + by.blueOfU * u);
    }
}

template <typename From, typename To>
void Convert(const From* const yuv[3], size_t count, const YuvFactors& factors, To* const rgb[4]) {
    ConvertPixels(yuv[0], yuv[1], yuv[2], count, factors, rgb[0], rgb[1], rgb[2]);
}

}  // namespace

void Luma8(const uint8_t* const rgb[4], size_t count, uint8_t* out) {
    Luma(rgb[0], rgb[1], rgb[2], count, out);
}

void Luma16(const uint16_t* const rgb[4], size_t count, uint16_t* out) {
    Luma(rgb[0], rgb[1], rgb[2], count, out);
}

void Yuv8To8(const uint8_t* const yuv[3], size_t count, const YuvFactors& factors,
             uint8_t* const rgb[4]) {
    Convert(yuv, count, factors, rgb);
}

void Yuv8To16(const uint8_t* const yuv[3], size_t count, const YuvFactors& factors,
              uint16_t* const rgb[4]) {
    Convert(yuv, count, factors, rgb);
}

void Yuv16To8(const uint16_t* const yuv[3], size_t count, const YuvFactors& factors,
              uint8_t* const rgb[4]) {
    Convert(yuv, count, factors, rgb);
}

void Yuv16To16(const uint16_t* const yuv[3], size_t count, const YuvFactors& factors,
               uint16_t* const rgb[4]) {
    Convert(yuv, count, factors, rgb);
}

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
