// Formats that become gray.
#include <algorithm>
#include <cstring>

#include "imaging/picturesource.h"
#include "imaging/unpackline.h"

namespace ZelImage::Internal {

namespace {

// Words of four bytes, of which two remain.
void ReadDoubleWords(const uint8_t* line, size_t count, uint16_t* out) {
    for (size_t i = 0; i < count; ++i) {
        uint32_t word = 0;
        std::memcpy(&word, line + i * sizeof word, sizeof word);
        out[i] = static_cast<uint16_t>((static_cast<uint64_t>(word) * UINT16_MAX + UINT32_MAX / 2) /
                                       UINT32_MAX);
    }
}

template <typename Sample>
class GraySource : public PictureSource<Sample> {
  public:
    explicit GraySource(const Image& image) : image_(image) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        const uint8_t* const line = image_.Line(0, y);
        if constexpr (sizeof(Sample) > 1) {
            if (image_.format.depth == 32) return ReadDoubleWords(line, image_.width, channels[0]);
        }
        UnpackLine(image_.format, line, image_.width, channels[0]);
        // From the lowest number to the highest one.
        constexpr Sample kSign = 0x80;
        if (image_.format.type == ComponentType::Signed) {
            for (size_t x = 0; x < image_.width; ++x)
                channels[0][x] ^= kSign;
        }
    }

  private:
    const Image& image_;
};

// The first pixel of the first line has no filter, and then every second pixel in lines and
// columns.
template <typename Sample>
class SparseSource : public PictureSource<Sample> {
  public:
    explicit SparseSource(const Image& image) : image_(image), lines_(image, 3) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        const Sample* const line = lines_.Line(y);
        std::copy(line, line + image_.width, channels[0]);
        for (size_t x = (y + 1) % 2; x < image_.width; x += 2)
            channels[0][x] = MeanAround(x, y);
    }

  private:
    Sample MeanAround(size_t x, size_t y) {
        uint32_t sum = 0;
        uint32_t count = 0;
        const auto add = [&](size_t atX, size_t atY) {
            sum += lines_.Line(atY)[atX];
            ++count;
        };
        if (x > 0) add(x - 1, y);
        if (x + 1 < image_.width) add(x + 1, y);
        if (y > 0) add(x, y - 1);
        if (y + 1 < image_.height) add(x, y + 1);
        if (count == 0) add(x, y);
        return static_cast<Sample>((sum + count / 2) / count);
    }

    const Image& image_;
    LineWindow<Sample> lines_;
};

}  // namespace

uint32_t SampleDepth(const Format& format) {
    const bool isScaled = format.packing == Packing::PixelWord && format.depth == 6;
    return isScaled ? 8 : std::min(format.depth, 16U);
}

template <typename Sample>
PictureSourcePtr<Sample> MakeGraySource(const Image& image) {
    return std::make_unique<GraySource<Sample>>(image);
}

template <typename Sample>
PictureSourcePtr<Sample> MakeSparseSource(const Image& image) {
    return std::make_unique<SparseSource<Sample>>(image);
}

template PictureSourcePtr<uint8_t> MakeGraySource(const Image&);
template PictureSourcePtr<uint16_t> MakeGraySource(const Image&);
template PictureSourcePtr<uint8_t> MakeSparseSource(const Image&);
template PictureSourcePtr<uint16_t> MakeSparseSource(const Image&);

}  // namespace ZelImage::Internal
