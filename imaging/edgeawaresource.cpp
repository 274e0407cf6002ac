// Demosaicing along edges.
//
// Green at a pixel of another colour C is the mean of its two green neighbours in the line or the
// column, corrected by a quarter of how much C bends there:
//     (G[-1] + G[+1]) / 2 + (2 C[0] - C[-2] - C[+2]) / 4
// The direction with the smaller change |G[-1] - G[+1]| + |2 C[0] - C[-2] - C[+2]| counts; of equal
// ones, the mean. Red and blue are green plus the mean of their differences to green at the
// neighbours that have them. Behind the borders, the image continues as in a mirror.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "imaging/picturesource.h"
#include "imaging/unpackline.h"

namespace ZelImage::Internal {

namespace {

// Pixels that a line has beyond each border, and lines that are needed around one.
constexpr size_t kMargin = 2;

// The place of a line or column of `count`; the pixels of the border are not repeated, so that the
// colours of a mosaic continue.
size_t Mirror(ptrdiff_t place, size_t count) {
    const size_t period = 2 * (count - 1);
    const size_t distance = static_cast<size_t>(std::abs(place)) % period;
    return distance < count ? distance : period - distance;
}

// A few lines with margins, each kept until another one needs its room.
class MarginLines {
  public:
    MarginLines(size_t width, size_t lines)
        : width_(width), lines_(lines, std::vector<int>(width + 2 * kMargin)), held_(lines, -1) {}

    // True if the line must be filled.
    bool Take(size_t y) {
        const bool isNew = held_[y % lines_.size()] != static_cast<ptrdiff_t>(y);
        held_[y % lines_.size()] = static_cast<ptrdiff_t>(y);
        return isNew;
    }

    // The first pixel; those of the margin come before it.
    int* Line(size_t y) { return lines_[y % lines_.size()].data() + kMargin; }

    void FillMargins(size_t y) {
        int* const line = Line(y);
        for (ptrdiff_t i = 1; i <= static_cast<ptrdiff_t>(kMargin); ++i) {
            const ptrdiff_t right = static_cast<ptrdiff_t>(width_) - 1 + i;
            line[-i] = line[Mirror(-i, width_)];
            line[right] = line[Mirror(right, width_)];
        }
    }

  private:
    const size_t width_;
    std::vector<std::vector<int>> lines_;
    std::vector<ptrdiff_t> held_;
};

// One direction at a pixel: green beside it, and its own colour.
struct Direction {
    int change;
    int green;  // four times

    Direction(int before, int after, int colourBefore, int colour, int colourAfter) {
        const int bend = 2 * colour - colourBefore - colourAfter;
        change = std::abs(before - after) + std::abs(bend);
        green = 2 * (before + after) + bend;
    }
};

template <typename Sample>
class EdgeAwareSource : public PictureSource<Sample> {
  public:
    explicit EdgeAwareSource(const Image& image)
        : image_(image),
          cell_(CellOf(image)),
          white_(static_cast<int>((1U << image.format.depth) - 1)),
          lines_(image, 1),
          mosaic_(image.width, 8),
          green_(image.width, 4) {}

    void Read(size_t y, const Channels<Sample>& channels) override {
        const auto line = static_cast<ptrdiff_t>(y);
        const Lines mosaic = {Mosaic(line - 1), Mosaic(line), Mosaic(line + 1)};
        const Lines green = {Green(line - 1), Green(line), Green(line + 1)};
        const size_t coloured = ChannelAt(cell_, 0, y) == 1 ? 1 : 0;
        const size_t own = ChannelAt(cell_, coloured, y);
        Store(green.own, channels[1]);
        ReadColoured(mosaic, green, coloured, channels[own], channels[2 - own]);
        ReadGreen(mosaic, green, 1 - coloured, channels[own], channels[2 - own]);
    }

  private:
    struct Lines {
        const int* above;
        const int* own;
        const int* below;
    };

    const int* Mosaic(ptrdiff_t place) {
        const size_t y = Mirror(place, image_.height);
        if (mosaic_.Take(y)) {
            const Sample* const line = lines_.Line(y);
            std::copy(line, line + image_.width, mosaic_.Line(y));
            mosaic_.FillMargins(y);
        }
        return mosaic_.Line(y);
    }

    const int* Green(ptrdiff_t place) {
        const size_t y = Mirror(place, image_.height);
        if (green_.Take(y)) {
            FillGreen(y);
            green_.FillMargins(y);
        }
        return green_.Line(y);
    }

    void FillGreen(size_t y) {
        const auto line = static_cast<ptrdiff_t>(y);
        const int* const above2 = Mosaic(line - 2);
        const int* const above = Mosaic(line - 1);
        const int* const own = Mosaic(line);
        const int* const below = Mosaic(line + 1);
        const int* const below2 = Mosaic(line + 2);
        int* const green = green_.Line(y);
        std::copy(own, own + image_.width, green);
        for (size_t i = ChannelAt(cell_, 0, y) == 1 ? 1 : 0; i < image_.width; i += 2) {
            const auto x = static_cast<ptrdiff_t>(i);
            const Direction across(own[x - 1], own[x + 1], own[x - 2], own[x], own[x + 2]);
            const Direction down(above[x], below[x], above2[x], own[x], below2[x]);
            const int sum = across.change < down.change   ? 2 * across.green
                            : down.change < across.change ? 2 * down.green
                                                          : across.green + down.green;
            green[x] = Clamp((sum + 4) >> 3);
        }
    }

    // Pixels that have the colour of their line; the other colour is diagonally beside them.
    void ReadColoured(const Lines& mosaic, const Lines& green, size_t from, Sample* own,
                      Sample* other) const {
        for (size_t i = from; i < image_.width; i += 2) {
            const auto x = static_cast<ptrdiff_t>(i);
            const int sum = mosaic.above[x - 1] - green.above[x - 1] + mosaic.above[x + 1] -
                            green.above[x + 1] + mosaic.below[x - 1] - green.below[x - 1] +
                            mosaic.below[x + 1] - green.below[x + 1];
            own[x] = static_cast<Sample>(mosaic.own[x]);
            other[x] = static_cast<Sample>(Clamp(green.own[x] + ((sum + 2) >> 2)));
        }
    }

    void ReadGreen(const Lines& mosaic, const Lines& green, size_t from, Sample* own,
                   Sample* other) const {
        for (size_t i = from; i < image_.width; i += 2) {
            const auto x = static_cast<ptrdiff_t>(i);
            const int across =
                mosaic.own[x - 1] - green.own[x - 1] + mosaic.own[x + 1] - green.own[x + 1];
            const int down = mosaic.above[x] - green.above[x] + mosaic.below[x] - green.below[x];
            own[x] = static_cast<Sample>(Clamp(green.own[x] + ((across + 1) >> 1)));
            other[x] = static_cast<Sample>(Clamp(green.own[x] + ((down + 1) >> 1)));
        }
    }

    int Clamp(int value) const { return std::clamp(value, 0, white_); }

    void Store(const int* in, Sample* out) const {
        for (size_t x = 0; x < image_.width; ++x)
            out[x] = static_cast<Sample>(in[x]);
    }

    const Image& image_;
    const BayerCell cell_;
    const int white_;
    LineWindow<Sample> lines_;
    // Green of the lines beside the one that is read needs the lines up to three beside it.
    MarginLines mosaic_;
    MarginLines green_;
};

}  // namespace

template <typename Sample>
PictureSourcePtr<Sample> MakeEdgeAwareSource(const Image& image) {
    return std::make_unique<EdgeAwareSource<Sample>>(image);
}

template PictureSourcePtr<uint8_t> MakeEdgeAwareSource(const Image&);
template PictureSourcePtr<uint16_t> MakeEdgeAwareSource(const Image&);

}  // namespace ZelImage::Internal
