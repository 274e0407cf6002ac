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

template <typename To>
To Clamp(float value, int white) {
    int rounded = static_cast<int>(value + 0.5F);
    rounded = rounded < 0 ? 0 : rounded;
    return static_cast<To>(rounded > white ? white : rounded);
}

template <typename From, typename To>
void Convert(const From* const yuv[3], size_t count, const YuvFactors& by, To* const rgb[4]) {
    const From* __restrict const luma = yuv[0];
    const From* __restrict const chromaU = yuv[1];
    const From* __restrict const chromaV = yuv[2];
    To* __restrict const red = rgb[0];
    To* __restrict const green = rgb[1];
    To* __restrict const blue = rgb[2];
    const YuvFactors factors = by;
    for (size_t i = 0; i < count; ++i) {
        const float y = (static_cast<float>(luma[i]) - factors.black) * factors.luma;
        const float u = static_cast<float>(chromaU[i]) - factors.neutral;
        const float v = static_cast<float>(chromaV[i]) - factors.neutral;
        red[i] = Clamp<To>(y + factors.redOfV * v, factors.white);
        green[i] = Clamp<To>(y + factors.greenOfU * u + factors.greenOfV * v, factors.white);
        blue[i] = Clamp<To>(y + factors.blueOfU * u, factors.white);
    }
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
