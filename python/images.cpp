#include <filesystem>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl/filesystem.h>

#include "ZelImage/ZelImage.h"
#include "python/bindings.h"
#include "zel/error.h"
#include "zel/picture.h"

namespace ZelPython {

namespace {

// How numpy sees the components of a format.
struct Elements {
    py::ssize_t size;    // bytes
    std::string format;  // of the struct module
    std::vector<py::ssize_t> shape;
    std::vector<py::ssize_t> strides;
};

std::string ElementFormat(const ZelImage::FormatInfo& info, size_t bytes) {
    if (info.componentType == ZelImage::ComponentType::Float) return bytes == 8 ? "d" : "f";
    const bool isSigned = info.componentType == ZelImage::ComponentType::Signed;
    switch (bytes) {
        case 1:
            return isSigned ? "b" : "B";
        case 2:
            return isSigned ? "h" : "H";
        case 4:
            return isSigned ? "i" : "I";
        default:
            return isSigned ? "q" : "Q";
    }
}

// Throws for formats whose components are not whole bytes.
Elements ElementsOf(const ZelImage::View& view) {
    ZelImage::FormatInfo info{};
    const bool isKnown = ZelImage::DescribeFormat(view.pixelFormat, &info, sizeof info);
    if (!isKnown || info.packing != ZelImage::Packing::Unpacked || info.componentBytes == 0) {
        throw zel::Error(ZelCamErr_WrongParamType, "making an array", "",
                         zel::formatName(view.pixelFormat) +
                             " is not made of whole bytes; image(\"unpacked\") gives its values, "
                             "image(\"RGB8\") a picture");
    }
    const auto size = static_cast<py::ssize_t>(info.componentBytes);
    const auto width = static_cast<py::ssize_t>(view.width);
    const auto height = static_cast<py::ssize_t>(view.height);
    const auto pitch = static_cast<py::ssize_t>(view.linePitch);
    const auto components = static_cast<py::ssize_t>(info.components);
    Elements elements{
        size, ElementFormat(info, info.componentBytes), {height, width}, {pitch, size}};
    if (info.isPlanar) {
        elements.shape.insert(elements.shape.begin(), components);
        elements.strides.insert(elements.strides.begin(), pitch * height);
    } else if (components > 1) {
        elements.shape.push_back(components);
        elements.strides = {pitch, size * components, size};
    }
    return elements;
}

py::capsule Keeper(std::shared_ptr<const void> keep) {
    using Keep = std::shared_ptr<const void>;
    return {new Keep(std::move(keep)), [](void* kept) {
                const py::gil_scoped_release unlocked;
                delete static_cast<Keep*>(kept);
            }};
}

// "unpacked" is the format of the same components in whole bytes.
uint64_t FormatNamed(const ImageObject& image, const std::string& name) {
    if (name != "unpacked") return ZelImage::FormatByName(name.c_str());
    ZelImage::FormatInfo info{};
    ZelImage::DescribeFormat(image.view.pixelFormat, &info, sizeof info);
    return info.unpackedFormat;
}

void Save(const ImageObject& image, const std::filesystem::path& file) {
    zel::detail::check(ZelImage::Save(image.view, file.c_str(), nullptr), "saving " + file.string(),
                       "", ZelImage::LastReason());
}

py::buffer_info BufferOf(ImageObject& image) {
    const auto size = static_cast<py::ssize_t>(image.view.size);
    return {const_cast<void*>(image.view.data), 1, "B", 1, {size}, {1}, true};
}

}  // namespace

ImageObject ImageOf(const zel::Image& image) {
    auto keep = std::make_shared<zel::Image>(image);
    return {
        keep,
        {image.data(), image.size(), image.format(), image.width(), image.height(), image.pitch()}};
}

ImageObject Convert(const ImageObject& image, const std::string& format, bool edgeAware) {
    const uint64_t number = FormatNamed(image, format);
    ZelImage::ConvertOptions options;
    if (edgeAware) options.demosaic = ZelImage::Demosaic::EdgeAware;
    auto bytes =
        std::make_shared<std::vector<uint8_t>>(ZelImage::ConvertedSize(image.view, number, 0));
    zel::detail::check(
        ZelImage::Convert(image.view, number, &options, bytes->data(), bytes->size(), 0),
        "converting " + zel::formatName(image.view.pixelFormat) + " to " + format, "",
        ZelImage::LastReason());
    const ZelImage::View view{
        bytes->data(),    bytes->size(),     number,
        image.view.width, image.view.height, ZelImage::LineBytes(number, image.view.width)};
    return {std::move(bytes), view};
}

py::object ArrayOf(const ImageObject& image) {
    const Elements elements = ElementsOf(image.view);
    return py::array(py::dtype(elements.format), elements.shape, elements.strides, image.view.data,
                     Keeper(image.keep));
}

void AddImages(py::module_& module) {
    py::class_<ImageObject, Owned<ImageObject>>(
        module, "Image", py::buffer_protocol(),
        "An image in the memory of a frame, which it keeps leased, or a converted one.")
        .def_buffer(&BufferOf)
        .def_property_readonly("array", &ArrayOf, "A numpy view; no copy.")
        .def_property_readonly("width", [](const ImageObject& self) { return self.view.width; })
        .def_property_readonly("height", [](const ImageObject& self) { return self.view.height; })
        .def_property_readonly("pitch", [](const ImageObject& self) { return self.view.linePitch; })
        .def_property_readonly(
            "format",
            [](const ImageObject& self) { return zel::formatName(self.view.pixelFormat); })
        .def_property_readonly("format_number",
                               [](const ImageObject& self) { return self.view.pixelFormat; })
        .def("convert", &Convert, py::arg("format"), py::arg("edge_aware") = false, Unlocked())
        .def("save", &Save, py::arg("file"), Unlocked())
        .def("__dlpack__",
             [](const ImageObject& self, const py::kwargs& arguments) {
                 return ArrayOf(self).attr("__dlpack__")(**arguments);
             })
        .def("__dlpack_device__",
             [](const ImageObject& self) { return ArrayOf(self).attr("__dlpack_device__")(); })
        .def("__repr__", [](const ImageObject& self) {
            return "<Image " + zel::formatName(self.view.pixelFormat) + " " +
                   std::to_string(self.view.width) + " x " + std::to_string(self.view.height) + ">";
        });
}

}  // namespace ZelPython
