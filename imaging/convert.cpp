// The conversions of the public interface.
#include <algorithm>
#include <cstring>
#include <string>

#include "imaging/error.h"
#include "imaging/options.h"
#include "imaging/picture.h"
#include "imaging/shape.h"
#include "imaging/unpackline.h"

namespace ZelImage {

using namespace Internal;  // what this file is made of

namespace {

// The components of one line of a plane, unpacked.
void UnpackTo(const Format& format, const uint8_t* line, size_t count, size_t lineBytes,
              uint8_t* out) {
    if (format.packing == Packing::Unpacked) {
        std::memcpy(out, line, lineBytes);
    } else if (format.ComponentBytes() == 1) {
        UnpackLine(format, line, count, out);
    } else if (reinterpret_cast<uintptr_t>(out) % alignof(uint16_t) == 0) {
        UnpackLine(format, line, count, reinterpret_cast<uint16_t*>(out));
    } else {
        std::vector<uint16_t> aligned(count);
        UnpackLine(format, line, count, aligned.data());
        std::memcpy(out, aligned.data(), count * sizeof aligned[0]);
    }
}

void UnpackPlanes(const Image& image, const Shape& to, uint8_t* out) {
    for (size_t plane = 0; plane < image.shape.planeCount; ++plane) {
        const PlaneShape& from = image.shape.planes[plane];
        for (size_t y = 0; y < from.lines; ++y) {
            UnpackTo(image.format, image.Line(plane, y), from.components, image.shape.lineBytes,
                     out + to.planes[plane].offset + y * to.pitch);
        }
    }
}

// Whether the conversion is that to the unpacked form.
bool IsUnpacking(const Format& format, uint64_t toFormat) {
    const Format* unpacked = UnpackedForm(format);
    return unpacked != nullptr && unpacked->value == toFormat;
}

Shape TargetShape(const Image& image, uint64_t toFormat, size_t toPitch) {
    PictureForm form{};
    if (!IsUnpacking(image.format, toFormat)) {
        RequirePicture(image);
        if (!FindForm(toFormat, form)) {
            throw Error(std::string("the pixel format ") + image.format.name +
                        " is not converted to " + NameOf(toFormat));
        }
    }
    return ShapeOf(toFormat, &GetFormat(toFormat), image.width, image.height, toPitch);
}

// An image of which the size matters, not the bytes.
Image Outline(const View& view) {
    const Format& format = GetFormat(view.pixelFormat);
    return {format, view.width, view.height,
            ShapeOf(view.pixelFormat, &format, view.width, view.height, view.linePitch), nullptr};
}

// The components without padding, each in its bytes.
Shape UnpackedShape(const Image& image) {
    const size_t bytes = image.format.ComponentBytes();
    if (bytes == 0) {
        throw Error(std::string("the pixel format ") + image.format.name + " cannot be unpacked");
    }
    Shape shape = image.shape;
    shape.lineBytes = shape.pitch = shape.planes[0].components * bytes;
    size_t lines = 0;
    for (size_t i = 0; i < shape.planeCount; ++i) {
        shape.planes[i].offset = lines * shape.pitch;
        lines += shape.planes[i].lines;
    }
    shape.bytes = lines * shape.pitch;
    return shape;
}

void RequireRoom(const void* to, size_t size, const Shape& shape) {
    if (to == nullptr) throw Error("there is no memory to write to");
    if (size < shape.bytes) {
        throw Error("the memory has " + std::to_string(size) + " bytes, the result needs " +
                    std::to_string(shape.bytes));
    }
}

}  // namespace

size_t ConvertedSize(const View& from, uint64_t toFormat, size_t toPitch) {
    size_t bytes = 0;
    Guarded([&] { bytes = TargetShape(Outline(from), toFormat, toPitch).bytes; });
    return bytes;
}

ZelCamErr Convert(const View& from, uint64_t toFormat, const ConvertOptions* options, void* to,
                  size_t toSize, size_t toPitch) {
    return Guarded([&] {
        const Image image = ImageOf(from);
        const Shape shape = TargetShape(image, toFormat, toPitch);
        const ConvertOptions known = KnownOptions(options);
        RequireRoom(to, toSize, shape);
        PictureForm form{};
        if (IsUnpacking(image.format, toFormat)) {
            UnpackPlanes(image, shape, static_cast<uint8_t*>(to));
        } else if (FindForm(toFormat, form)) {
            ConvertToPicture(image, form, known, static_cast<uint8_t*>(to), shape.pitch);
        }
    });
}

size_t UnpackedSize(const View& from) {
    size_t bytes = 0;
    Guarded([&] { bytes = UnpackedShape(Outline(from)).bytes; });
    return bytes;
}

ZelCamErr Unpack(const View& from, void* to, size_t toSize) {
    return Guarded([&] {
        const Image image = ImageOf(from);
        const Shape shape = UnpackedShape(image);
        RequireRoom(to, toSize, shape);
        UnpackPlanes(image, shape, static_cast<uint8_t*>(to));
    });
}

}  // namespace ZelImage
