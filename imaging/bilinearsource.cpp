// Bilinear demosaicing.
#include <algorithm>
#include <array>

#include "imaging/error.h"
#include "imaging/kernels/kernels.h"
#include "imaging/picturesource.h"
#include "imaging/unpackline.h"

namespace ZelImage::Internal {

namespace {

void Demosaic(const Kernels::MosaicLines<uint8_t>& lines, size_t from, size_t to,
              const Kernels::MosaicColours<uint8_t>& colours) {
    Kernels::Best().demosaic8(lines, from, to, colours);
}

void Demosaic(const Kernels::MosaicLines<uint16_t>& lines, size_t from, size_t to,
              const Kernels::MosaicColours<uint16_t>& colours) {
    Kernels::Best().demosaic16(lines, from, to, colours);
}

template <typename Sample>
class BilinearSource : public PictureSource<Sample> {
  public:
    explicit BilinearSource(const Image& image)
        : image_(image), cell_(CellOf(image)), lines_(image, 3) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        size_t from = 1;
        size_t to = 1;
        if (y > 0 && y + 1 < image_.height) ReadInside(y, channels, from, to);
        for (size_t x = 0; x < from; ++x)
            ReadPixel(x, y, channels);
        for (size_t x = to; x < image_.width; ++x)
            ReadPixel(x, y, channels);
    }

  private:
    // The pixels from `from` to `to`, which have eight neighbours and are pairs of a colour and
    // green: most of a picture.
    void ReadInside(size_t y, const Channels<Sample>& channels, size_t& from, size_t& to) {
        from = ChannelAt(cell_, 1, y) == 1 ? 2 : 1;
        to = std::max(from, from + (image_.width - 1 - std::min(from, image_.width - 1)) / 2 * 2);
        const size_t own = ChannelAt(cell_, from, y);
        Demosaic({lines_.Line(y - 1), lines_.Line(y), lines_.Line(y + 1)}, from, to,
                 {channels[own], channels[1], channels[2 - own]});
    }

    // One pixel, wherever it lies.
    void ReadPixel(size_t x, size_t y, const Channels<Sample>& channels) {
        std::array<uint32_t, 3> sum{};
        std::array<uint32_t, 3> count{};
        const size_t right = std::min(x + 1, image_.width - 1);
        const size_t bottom = std::min(y + 1, image_.height - 1);
        for (size_t atY = y == 0 ? 0 : y - 1; atY <= bottom; ++atY) {
            const Sample* const line = lines_.Line(atY);
            for (size_t atX = x == 0 ? 0 : x - 1; atX <= right; ++atX) {
                const size_t channel = ChannelAt(cell_, atX, atY);
                sum[channel] += line[atX];
                ++count[channel];
            }
        }
        for (size_t channel = 0; channel < 3; ++channel) {
            channels[channel][x] =
                static_cast<Sample>((sum[channel] + count[channel] / 2) / count[channel]);
        }
        channels[ChannelAt(cell_, x, y)][x] = lines_.Line(y)[x];
    }

    const Image& image_;
    const BayerCell cell_;
    LineWindow<Sample> lines_;
};

}  // namespace

BayerCell CellOf(const Image& image) {
    if (image.width < 2 || image.height < 2)
        throw Error("a Bayer image needs at least 2 by 2 pixels");
    switch (image.format.layout) {
        case Layout::BayerGR:
            return {1, 0, 2, 1};
        case Layout::BayerRG:
            return {0, 1, 1, 2};
        case Layout::BayerGB:
            return {1, 2, 0, 1};
        default:
            return {2, 1, 1, 0};
    }
}

template <typename Sample>
PictureSourcePtr<Sample> MakeBilinearSource(const Image& image) {
    return std::make_unique<BilinearSource<Sample>>(image);
}

template PictureSourcePtr<uint8_t> MakeBilinearSource(const Image&);
template PictureSourcePtr<uint16_t> MakeBilinearSource(const Image&);

}  // namespace ZelImage::Internal
