#include "tools/imaging/decode.h"

#include <string>
#include <utility>

#include "tools/imaging/colour.h"
#include "tools/imaging/pixelformat.h"
#include "tools/imaging/unpack.h"

namespace Imaging {
namespace {

// Far above any sensor; keeps the sizes computed from it within 64 bits.
constexpr size_t kMaxExtent = size_t{1} << 24;

void CheckGeometry(const RawImage& image) {
    if (image.width == 0 || image.height == 0) throw Error("the image has no pixels");
    if (image.width > kMaxExtent || image.height > kMaxExtent || image.linePadding > kMaxExtent) {
        throw Error("the image claims to be " + std::to_string(image.width) + " by " +
                    std::to_string(image.height) + " pixels");
    }
    if (image.data == nullptr || image.size < image.ImageBytes()) {
        throw Error("the buffer holds " + std::to_string(image.size) + " bytes, the image needs " +
                    std::to_string(image.ImageBytes()));
    }
}

Components Unpack(const RawImage& image, const PixelFormat& format) {
    const size_t perLine = image.width * format.Components();
    Components components{image.width, image.height, {}};
    components.values.resize(perLine * image.height);
    for (size_t y = 0; y < image.height; ++y) {
        UnpackLine(format, image.data + y * image.LinePitch(), perLine,
                   components.values.data() + y * perLine);
    }
    return components;
}

std::vector<uint16_t> ToChannels(Components components, const PixelFormat& format) {
    if (format.layout == Layout::Mono) return std::move(components.values);
    if (format.IsBayer()) return Demosaic(components, format.layout);
    if (format.IsYuv()) return YuvToRgb(components, format);
    return ReorderToRgb(components, format.layout);
}

void Stretch(std::vector<uint16_t>& samples, uint32_t fromDepth, uint32_t toDepth) {
    if (fromDepth == toDepth) return;
    const uint32_t from = (1U << fromDepth) - 1;
    const uint32_t to = (1U << toDepth) - 1;
    for (uint16_t& sample : samples)
        sample = static_cast<uint16_t>((sample * to + from / 2) / from);
}

}  // namespace

size_t RawImage::LinePitch() const {
    return LineBytes(pixelFormat, width) + linePadding;
}

size_t RawImage::ImageBytes() const {
    return height == 0 ? 0 : LinePitch() * (height - 1) + LineBytes(pixelFormat, width);
}

Picture Decode(const RawImage& image) {
    const PixelFormat& format = GetPixelFormat(image.pixelFormat);
    CheckGeometry(image);
    Picture picture;
    picture.width = image.width;
    picture.height = image.height;
    picture.channels = format.layout == Layout::Mono ? 1 : 3;
    picture.depth = format.depth <= 8 ? 8 : 16;
    picture.samples = ToChannels(Unpack(image, format), format);
    Stretch(picture.samples, format.depth, picture.depth);
    return picture;
}

}  // namespace Imaging
