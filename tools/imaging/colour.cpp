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

// The three channels of one pixel of the mosaic.
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

uint16_t ClampToByte(double value) {
    return static_cast<uint16_t>(std::clamp(std::lround(value), 0L, 255L));
}

void ConvertPixel(double luma, double u, double v, YuvRange range, uint16_t* rgb) {
    u -= 128;
    v -= 128;
    if (range == YuvRange::Limited) {
        luma = (luma - 16) * 255 / 219;
        u = u * 255 / 224;
        v = v * 255 / 224;
    }
    rgb[0] = ClampToByte(luma + 1.402 * v);
    rgb[1] = ClampToByte(luma - 0.344136 * u - 0.714136 * v);
    rgb[2] = ClampToByte(luma + 1.772 * u);
}

// Converts the four components of two pixels; the arguments are the places of the components.
struct SharedChroma {
    size_t luma1, u, luma2, v;
};

void ConvertPair(const uint16_t* in, const SharedChroma& at, YuvRange range, uint16_t* rgb) {
    ConvertPixel(in[at.luma1], in[at.u], in[at.v], range, rgb);
    ConvertPixel(in[at.luma2], in[at.u], in[at.v], range, rgb + 3);
}

}  // namespace

std::vector<uint16_t> Demosaic(const Components& mosaic, Layout layout) {
    if (mosaic.width < 2 || mosaic.height < 2) {
        throw Error("a Bayer image needs at least 2 by 2 pixels");
    }
    const BayerCell cell = CellOf(layout);
    std::vector<uint16_t> rgb(mosaic.values.size() * 3);
    uint16_t* out = rgb.data();
    for (size_t y = 0; y < mosaic.height; ++y) {
        for (size_t x = 0; x < mosaic.width; ++x, out += 3) {
            InterpolatePixel(mosaic, cell, x, y, out);
        }
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
    const bool shared = format.layout != Layout::Uyv;
    if (shared && image.width % 2 != 0) {
        throw Error(std::string(format.name) + " needs an even width");
    }
    const SharedChroma at =
        format.layout == Layout::Yuyv ? SharedChroma{0, 1, 2, 3} : SharedChroma{1, 0, 3, 2};
    std::vector<uint16_t> rgb(image.width * image.height * 3);
    const uint16_t* in = image.values.data();
    uint16_t* const end = rgb.data() + rgb.size();
    for (uint16_t* out = rgb.data(); out != end; out += shared ? 6 : 3, in += shared ? 4 : 3) {
        if (shared) {
            ConvertPair(in, at, format.range, out);
        } else {
            ConvertPixel(in[1], in[0], in[2], format.range, out);
        }
    }
    return rgb;
}

}  // namespace Imaging
