#include "imaging/shape.h"

#include <string>

#include "imaging/error.h"

namespace ZelImage {

namespace Internal {

namespace {

// Far above any sensor; keep the sizes computed from them within 64 bits.
constexpr size_t kMaxExtent = size_t{1} << 24;
constexpr size_t kMaxPitch = size_t{1} << 34;

std::string Number(size_t number) {
    return std::to_string(number);
}

void CheckExtent(size_t width, size_t height) {
    if (width == 0 || height == 0) throw Error("the image has no pixels");
    if (width > kMaxExtent || height > kMaxExtent) {
        throw Error("the image claims to be " + Number(width) + " by " + Number(height) +
                    " pixels");
    }
}

// Pixels that share components come in whole groups.
void CheckGroups(const Format& format, size_t width, size_t height) {
    const size_t group = format.PixelGroup();
    if (width % group != 0) {
        throw Error(std::string(format.name) + " needs " +
                    (group == 2 ? "an even width" : "a width that is a multiple of 4"));
    }
    if (format.SharesLines() && height % 2 != 0)
        throw Error(std::string(format.name) + " needs an even height");
}

// The bits of one plane that a pixel takes in it. Each of two planes of luma and chroma has lines
// of eight bits for a pixel.
size_t PlaneBits(uint64_t pixelFormat, const Format* format) {
    if (format == nullptr) return BitsPerPixel(pixelFormat);
    if (format->IsPlanar() && format->kind == FormatKind::Yuv) return format->depth;
    return BitsPerPixel(pixelFormat) / format->Planes();
}

size_t LineBytesOf(uint64_t pixelFormat, const Format* format, size_t width) {
    return (width * PlaneBits(pixelFormat, format) + 7) / 8;
}

}  // namespace

Shape ShapeOf(uint64_t pixelFormat, const Format* format, size_t width, size_t height,
              size_t pitch) {
    CheckExtent(width, height);
    if (format != nullptr) CheckGroups(*format, width, height);
    Shape shape;
    shape.lineBytes = LineBytesOf(pixelFormat, format, width);
    shape.pitch = pitch == 0 ? shape.lineBytes : pitch;
    if (shape.pitch < shape.lineBytes || shape.pitch > kMaxPitch) {
        throw Error("the line pitch is " + Number(pitch) + " bytes, a line needs " +
                    Number(shape.lineBytes));
    }
    if (format != nullptr) shape.planeCount = format->Planes();
    size_t lines = 0;
    for (size_t i = 0; i < shape.planeCount; ++i) {
        const bool hasHalf = i > 0 && format != nullptr && format->SharesLines();
        shape.planes[i] = {lines * shape.pitch, hasHalf ? height / 2 : height,
                           format == nullptr ? 0 : format->LineComponents(width)};
        lines += shape.planes[i].lines;
    }
    shape.bytes = (lines - 1) * shape.pitch + shape.lineBytes;
    return shape;
}

Image ImageOf(const View& view) {
    const Format& format = GetFormat(view.pixelFormat);
    const Shape shape = ShapeOf(view.pixelFormat, &format, view.width, view.height, view.linePitch);
    if (view.data == nullptr) throw Error("the image has no data");
    if (view.size < shape.bytes) {
        throw Error("the buffer holds " + Number(view.size) + " bytes, the image needs " +
                    Number(shape.bytes));
    }
    return {format, view.width, view.height, shape, static_cast<const uint8_t*>(view.data)};
}

}  // namespace Internal

size_t LineBytes(uint64_t pixelFormat, size_t width) {
    if (width > Internal::kMaxExtent) return 0;
    return Internal::LineBytesOf(pixelFormat, Internal::FindFormat(pixelFormat), width);
}

size_t ImageSize(const View& view) {
    size_t bytes = 0;
    Internal::Guarded([&] {
        bytes = Internal::ShapeOf(view.pixelFormat, Internal::FindFormat(view.pixelFormat),
                                  view.width, view.height, view.linePitch)
                    .bytes;
    });
    return bytes;
}

}  // namespace ZelImage
