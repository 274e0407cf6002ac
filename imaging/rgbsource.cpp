// Formats that store red, green and blue.
#include <utility>
#include <vector>

#include "imaging/error.h"
#include "imaging/kernels/kernels.h"
#include "imaging/picturesource.h"
#include "imaging/unpackline.h"

namespace ZelImage::Internal {

namespace {

void Split(const uint8_t* in, size_t count, size_t step, const Channels<uint8_t>& channels) {
    Kernels::Best().split8(in, count, step, channels.data());
}

void Split(const uint16_t* in, size_t count, size_t step, const Channels<uint16_t>& channels) {
    Kernels::Best().split16(in, count, step, channels.data());
}

template <typename Sample>
Sample Scale(Sample value, uint32_t white) {
    return static_cast<Sample>((value * 255U + white / 2) / white);
}

template <typename Sample>
class RgbSource : public PictureSource<Sample> {
  public:
    explicit RgbSource(const Image& image)
        : image_(image),
          step_(image.format.PictureChannels()),
          isBlueFirst_(image.format.layout == Layout::Bgr || image.format.layout == Layout::Bgra),
          lines_(image, 1) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        Channels<Sample> ordered = channels;
        if (isBlueFirst_) std::swap(ordered[0], ordered[2]);
        Split(lines_.Line(y), image_.width, step_, ordered);
        if (SampleDepth(image_.format) == image_.format.depth) return;
        for (size_t x = 0; x < image_.width; ++x) {
            channels[0][x] = Scale(channels[0][x], 31);
            channels[1][x] = Scale(channels[1][x], 63);
            channels[2][x] = Scale(channels[2][x], 31);
        }
    }

  private:
    const Image& image_;
    const size_t step_;
    const bool isBlueFirst_;
    LineWindow<Sample> lines_;
};

template <typename Sample>
class PlanarSource : public PictureSource<Sample> {
  public:
    explicit PlanarSource(const Image& image) : image_(image) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        for (size_t plane = 0; plane < 3; ++plane)
            UnpackLine(image_.format, image_.Line(plane, y), image_.width, channels[plane]);
    }

  private:
    const Image& image_;
};

// Two pixels share red and blue; a last single pixel shares them with the pixel before it.
template <typename Sample>
class BiColourSource : public PictureSource<Sample> {
  public:
    explicit BiColourSource(const Image& image) : image_(image), lines_(image, 1) {
        if (image.width < 2)
            throw Error(std::string(image.format.name) + " needs at least two pixels in a line");
    }

    void Read(size_t y, const Channels<Sample>& channels) override {
        const Sample* const in = lines_.Line(y);
        const bool isRedFirst = image_.format.layout == Layout::BiColourRG;
        Sample* const first = channels[isRedFirst ? 0 : 2];
        Sample* const second = channels[isRedFirst ? 2 : 0];
        for (size_t x = 0; x < image_.width; ++x) {
            const bool isAlone = x + 1 == image_.width && x % 2 == 0;
            first[x] = in[x / 2 * 4];
            second[x] = isAlone ? second[x - 1] : in[x / 2 * 4 + 2];
            channels[1][x] = in[2 * x + 1];
        }
    }

  private:
    const Image& image_;
    LineWindow<Sample> lines_;
};

}  // namespace

template <typename Sample>
PictureSourcePtr<Sample> MakeRgbSource(const Image& image) {
    if (image.format.IsPlanar()) return std::make_unique<PlanarSource<Sample>>(image);
    return std::make_unique<RgbSource<Sample>>(image);
}

template <typename Sample>
PictureSourcePtr<Sample> MakeBiColourSource(const Image& image) {
    return std::make_unique<BiColourSource<Sample>>(image);
}

template PictureSourcePtr<uint8_t> MakeRgbSource(const Image&);
template PictureSourcePtr<uint16_t> MakeRgbSource(const Image&);
template PictureSourcePtr<uint8_t> MakeBiColourSource(const Image&);
template PictureSourcePtr<uint16_t> MakeBiColourSource(const Image&);

}  // namespace ZelImage::Internal
