#include "tools/imaging/colour.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Imaging {
namespace {

// Channel (red 0, green 1, blue 2) of each pixel of the 2 by 2 cell, line by line.
using BayerCell = std::array<size_t, 4>;

BayerCell CellOf(Layout layout) {
    switch (layout) {
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

size_t ChannelAt(const BayerCell& cell, size_t x, size_t y) {
    return cell[y % 2 * 2 + x % 2];
}

// The three channels of one pixel of the mosaic, wherever it lies.
void InterpolatePixel(const Components& mosaic, const BayerCell& cell, size_t x, size_t y,
                      uint16_t* rgb) {
    std::array<uint32_t, 3> sum{};
    std::array<uint32_t, 3> count{};
    const size_t right = std::min(x + 1, mosaic.width - 1);
    const size_t bottom = std::min(y + 1, mosaic.height - 1);
    for (size_t ny = y == 0 ? 0 : y - 1; ny <= bottom; ++ny) {
        for (size_t nx = x == 0 ? 0 : x - 1; nx <= right; ++nx) {
            const size_t channel = ChannelAt(cell, nx, ny);
            sum[channel] += mosaic.values[ny * mosaic.width + nx];
            ++count[channel];
        }
    }
    for (size_t channel = 0; channel < 3; ++channel) {
        rgb[channel] = static_cast<uint16_t>((sum[channel] + count[channel] / 2) / count[channel]);
    }
    rgb[ChannelAt(cell, x, y)] = mosaic.values[y * mosaic.width + x];
}

uint16_t Mean(uint32_t a, uint32_t b) {
    return static_cast<uint16_t>((a + b + 1) / 2);
}

uint16_t Mean(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return static_cast<uint16_t>((a + b + c + d + 2) / 4);
}

// The same for the pixels of a line between its first and last one, where every pixel has eight
// neighbours: most of a picture. `in` and `rgb` are those of the line.
void InterpolateInside(const uint16_t* in, size_t width, const BayerCell& cell, size_t y,
                       uint16_t* rgb) {
    const uint16_t* const above = in - width;
    const uint16_t* const below = in + width;
    const size_t firstGreen = ChannelAt(cell, 1, y) == 1 ? 1 : 2;
    const size_t own = ChannelAt(cell, firstGreen + 1, y);  // of the pixels between the green ones
    for (size_t x = firstGreen; x + 1 < width; x += 2) {
        rgb[3 * x + own] = Mean(in[x - 1], in[x + 1]);
        rgb[3 * x + 1] = in[x];
        rgb[3 * x + 2 - own] = Mean(above[x], below[x]);
    }
    for (size_t x = 3 - firstGreen; x + 1 < width; x += 2) {
        rgb[3 * x + own] = in[x];
        rgb[3 * x + 1] = Mean(in[x - 1], in[x + 1], above[x], below[x]);
        rgb[3 * x + 2 - own] = Mean(above[x - 1], above[x + 1], below[x - 1], below[x + 1]);
    }
}

// The numbers that YUV of one format is converted with, at the format's depth.
struct YuvScale {
    double white;        // full scale
    double black;        // luma of black
    double neutral;      // chroma of gray
    double lumaStretch;  // to the full range
    double chromaStretch;

    explicit YuvScale(const PixelFormat& format)
        : white((1U << format.depth) - 1),
          black(0),
          neutral(1U << (format.depth - 1)),
          lumaStretch(1),
          chromaStretch(1) {
        if (format.range == YuvRange::Full) return;
        const double step = 1U << (format.depth - 8);
        black = 16 * step;
        lumaStretch = white / (219 * step);
        chromaStretch = white / (224 * step);
    }

    uint16_t Clamp(double value) const {
        return static_cast<uint16_t>(std::lround(std::clamp(value, 0.0, white)));
    }
};

void ConvertPixel(double luma, double u, double v, const YuvScale& scale, uint16_t* rgb) {
    luma = (luma - scale.black) * scale.lumaStretch;
    u = (u - scale.neutral) * scale.chromaStretch;
    v = (v - scale.neutral) * scale.chromaStretch;
    rgb[0] = scale.Clamp(luma + 1.402 * v);
    rgb[1] = scale.Clamp(luma - 0.344136 * u - 0.714136 * v);
    rgb[2] = scale.Clamp(luma + 1.772 * u);
}

// Where the components of a group of one or two pixels are.
struct YuvPlaces {
    size_t pixels;
    size_t components;
    size_t luma[2];
    size_t u, v;
};

YuvPlaces PlacesOf(Layout layout) {
    switch (layout) {
        case Layout::Yuyv:
            return {2, 4, {0, 2}, 1, 3};
        case Layout::Uyvy:
            return {2, 4, {1, 3}, 0, 2};
        case Layout::Yuv:
            return {1, 3, {0, 0}, 1, 2};
        default:
            return {1, 3, {1, 0}, 0, 2};
    }
}

}  // namespace

std::vector<uint16_t> Demosaic(const Components& mosaic, Layout layout) {
    if (mosaic.width < 2 || mosaic.height < 2) {
        throw Error("a Bayer image needs at least 2 by 2 pixels");
    }
    const BayerCell cell = CellOf(layout);
    std::vector<uint16_t> rgb(mosaic.values.size() * 3);
    for (size_t y = 0; y < mosaic.height; ++y) {
        uint16_t* const line = rgb.data() + y * mosaic.width * 3;
        const bool inside = y > 0 && y + 1 < mosaic.height;
        const size_t step = inside ? mosaic.width - 1 : 1;
        if (inside) {
            InterpolateInside(mosaic.values.data() + y * mosaic.width, mosaic.width, cell, y, line);
        }
        for (size_t x = 0; x < mosaic.width; x += step)
            InterpolatePixel(mosaic, cell, x, y, line + 3 * x);
    }
    return rgb;
}

std::vector<uint16_t> ReorderToRgb(const Components& image, Layout layout) {
    const bool blueFirst = layout == Layout::Bgr || layout == Layout::Bgra;
    const size_t step = layout == Layout::Rgb || layout == Layout::Bgr ? 3 : 4;
    std::vector<uint16_t> rgb(image.width * image.height * 3);
    const uint16_t* in = image.values.data();
    for (uint16_t* out = rgb.data(); out != rgb.data() + rgb.size(); out += 3, in += step) {
        out[0] = in[blueFirst ? 2 : 0];
        out[1] = in[1];
        out[2] = in[blueFirst ? 0 : 2];
    }
    return rgb;
}

std::vector<uint16_t> YuvToRgb(const Components& image, const PixelFormat& format) {
    const YuvPlaces at = PlacesOf(format.layout);
    if (image.width % at.pixels != 0) {
        throw Error(std::string(format.name) + " needs an even width");
    }
    const YuvScale scale(format);
    std::vector<uint16_t> rgb(image.width * image.height * 3);
    uint16_t* out = rgb.data();
    const uint16_t* const end = image.values.data() + image.values.size();
    for (const uint16_t* in = image.values.data(); in != end; in += at.components) {
        for (size_t pixel = 0; pixel < at.pixels; ++pixel, out += 3) {
            ConvertPixel(in[at.luma[pixel]], in[at.u], in[at.v], scale, out);
        }
    }
    return rgb;
}

}  // namespace Imaging
