// YUV and YCbCr.
#include <algorithm>
#include <array>
#include <vector>

#include "imaging/kernels/kernels.h"
#include "imaging/picturesource.h"
#include "imaging/unpackline.h"

namespace ZelImage::Internal {

namespace {

using Kernels::YuvFactors;

// Weights of red and blue in luma; green has the rest.
struct Weights {
    double red;
    double blue;
};

Weights WeightsOf(YuvMatrix matrix) {
    switch (matrix) {
        case YuvMatrix::Bt709:
            return {0.2126, 0.0722};
        case YuvMatrix::Bt2020:
            return {0.2627, 0.0593};
        default:
            return {0.299, 0.114};
    }
}

// From components of `format` to samples whose full scale is `white`.
YuvFactors FactorsOf(const Format& format, const ConvertOptions& options, double white,
                     bool isGray) {
    const YuvRange range = options.range == YuvRange::OfFormat ? format.range : options.range;
    const Weights weights =
        WeightsOf(options.matrix == YuvMatrix::OfFormat ? format.matrix : options.matrix);
    const bool isLimited = range == YuvRange::Limited;
    const double step = 1U << (format.depth - 8);
    const double fullScale = (1U << format.depth) - 1;
    const double chroma = isGray ? 0 : white / (isLimited ? 224 * step : fullScale);
    const double ofV = 2 * (1 - weights.red) * chroma;
    const double ofU = 2 * (1 - weights.blue) * chroma;
    const double green = 1 - weights.red - weights.blue;
    YuvFactors factors{};
    factors.black = static_cast<float>(isLimited ? 16 * step : 0);
    factors.neutral = static_cast<float>(128 * step);
    factors.luma = static_cast<float>(white / (isLimited ? 219 * step : fullScale));
    factors.redOfV = static_cast<float>(ofV);
    factors.blueOfU = static_cast<float>(ofU);
    factors.greenOfU = static_cast<float>(-ofU * weights.blue / green);
    factors.greenOfV = static_cast<float>(-ofV * weights.red / green);
    return factors;
}

void ConvertLine(const uint8_t* const* yuv, size_t count, const YuvFactors& factors,
                 const Channels<uint8_t>& rgb) {
    Kernels::Best().yuv8To8(yuv, count, factors, rgb.data());
}
void ConvertLine(const uint8_t* const* yuv, size_t count, const YuvFactors& factors,
                 const Channels<uint16_t>& rgb) {
    Kernels::Best().yuv8To16(yuv, count, factors, rgb.data());
}
void ConvertLine(const uint16_t* const* yuv, size_t count, const YuvFactors& factors,
                 const Channels<uint8_t>& rgb) {
    Kernels::Best().yuv16To8(yuv, count, factors, rgb.data());
}
void ConvertLine(const uint16_t* const* yuv, size_t count, const YuvFactors& factors,
                 const Channels<uint16_t>& rgb) {
    Kernels::Best().yuv16To16(yuv, count, factors, rgb.data());
}

// Where the components of a group of pixels are.
template <size_t... places>
struct Luma {};

// A line of groups with `size` components, in which `luma` are the places of luma, and `u` and `v`
// those of the chroma that the pixels share.
template <size_t size, size_t u, size_t v, typename Component, size_t... luma>
void SplitGroups(const Component* in, size_t width, const std::array<Component*, 3>& yuv,
                 Luma<luma...>) {
    constexpr size_t kPixels = sizeof...(luma);
    for (size_t x = 0; x < width; x += kPixels, in += size) {
        size_t pixel = x;
        ((yuv[0][pixel++] = in[luma]), ...);
        for (pixel = x; pixel < x + kPixels; ++pixel) {
            yuv[1][pixel] = in[u];
            yuv[2][pixel] = in[v];
        }
    }
}

// `Component` is what the format stores, `Sample` what the picture has.
template <typename Component, typename Sample>
class YuvSource : public PictureSource<Sample> {
  public:
    YuvSource(const Image& image, const ConvertOptions& options, bool isGray)
        : image_(image),
          factors_(FactorsOf(image.format, options, sizeof(Sample) == 1 ? 255 : 65535, isGray)),
          lines_(image, 1),
          yuv_(3 * image.width),
          unused_(isGray ? image.width : 0) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        const std::array<Component*, 3> yuv = {yuv_.data(), yuv_.data() + image_.width,
                                               yuv_.data() + 2 * image_.width};
        const Component* const line = lines_.Line(y);
        if (image_.format.IsPlanar()) {
            SplitPlanes(line, y, yuv);
        } else {
            Split(line, yuv);
        }
        Channels<Sample> out = channels;
        if (!unused_.empty()) out[1] = out[2] = unused_.data();
        ConvertLine(yuv.data(), image_.width, factors_, out);
    }

  private:
    void Split(const Component* line, const std::array<Component*, 3>& yuv) const {
        const size_t width = image_.width;
        switch (image_.format.layout) {
            case Layout::YCbCr:
                return SplitGroups<3, 1, 2>(line, width, yuv, Luma<0>());
            case Layout::CbYCr:
                return SplitGroups<3, 0, 2>(line, width, yuv, Luma<1>());
            case Layout::YCbYCr:
                return SplitGroups<4, 1, 3>(line, width, yuv, Luma<0, 2>());
            case Layout::CbYCrY:
                return SplitGroups<4, 0, 2>(line, width, yuv, Luma<1, 3>());
            case Layout::YYCbYYCr:
                return SplitGroups<6, 2, 5>(line, width, yuv, Luma<0, 1, 3, 4>());
            default:
                return SplitGroups<6, 0, 3>(line, width, yuv, Luma<1, 2, 4, 5>());
        }
    }

    // Planes have eight bits.
    void SplitPlanes(const Component* line, size_t y, const std::array<Component*, 3>& yuv) const {
        const Layout layout = image_.format.layout;
        const bool isReversed = layout == Layout::Planes420Cr || layout == Layout::Planes422Cr;
        const uint8_t* const chroma = image_.Line(1, image_.format.SharesLines() ? y / 2 : y);
        std::copy(line, line + image_.width, yuv[0]);
        for (size_t x = 0; x < image_.width; ++x) {
            yuv[1][x] = chroma[x / 2 * 2 + (isReversed ? 1 : 0)];
            yuv[2][x] = chroma[x / 2 * 2 + (isReversed ? 0 : 1)];
        }
    }

    const Image& image_;
    const YuvFactors factors_;
    LineWindow<Component> lines_;
    std::vector<Component> yuv_;
    std::vector<Sample> unused_;  // of green and blue, where luma alone is wanted
};

}  // namespace

template <typename Sample>
PictureSourcePtr<Sample> MakeYuvSource(const Image& image, const ConvertOptions& options,
                                       bool isGray) {
    if (image.format.depth == 8)
        return std::make_unique<YuvSource<uint8_t, Sample>>(image, options, isGray);
    return std::make_unique<YuvSource<uint16_t, Sample>>(image, options, isGray);
}

template PictureSourcePtr<uint8_t> MakeYuvSource(const Image&, const ConvertOptions&, bool);
template PictureSourcePtr<uint16_t> MakeYuvSource(const Image&, const ConvertOptions&, bool);

}  // namespace ZelImage::Internal
