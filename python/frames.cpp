#include "python/frames.h"

#include <chrono>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/bindings.h"
#include "zel/picture.h"

namespace ZelPython {

namespace {

using zel::Frame;
using zel::Kind;

py::object ObjectOf(const zel::Value& value) {
    switch (value.kind()) {
        case Kind::Integer:
            return py::int_(value.as<int64_t>());
        case Kind::Boolean:
            return py::bool_(value.as<bool>());
        case Kind::Float:
            return py::float_(value.as<double>());
        default:
            return py::str(value.text());
    }
}

py::dict ChunksOf(const Frame& frame) {
    std::map<std::string, zel::Value> values;
    {
        const py::gil_scoped_release unlocked;
        values = frame.chunks().all();
    }
    py::dict chunks;
    for (const auto& [name, value] : values)
        chunks[py::str(name)] = ObjectOf(value);
    return chunks;
}

ImageObject ImageOfFrame(const Frame& frame, const std::string& format, bool edgeAware) {
    const ImageObject image = ImageOf(frame.image());
    return format.empty() ? image : Convert(image, format, edgeAware);
}

Owned<Frame> Hold(Frame frame) {
    return Owned<Frame>(new Frame(std::move(frame)));
}

// A part as Python sees it.
struct PartObject {
    uint64_t type;
    ImageObject image;
    uint64_t sourceId;
    uint64_t regionId;
    uint64_t purposeId;
};

std::vector<PartObject> PartsOf(const Frame& frame) {
    std::vector<PartObject> parts;
    for (const zel::Part& part : frame.parts())
        parts.push_back(
            {part.type, ImageOf(part.image), part.sourceId, part.regionId, part.purposeId});
    return parts;
}

void AddFrame(py::module_& module) {
    py::class_<PartObject, Owned<PartObject>>(module, "Part", "One part of a multi-part frame.")
        .def_readonly("type", &PartObject::type)
        .def_readonly("image", &PartObject::image)
        .def_property_readonly("array", [](const PartObject& self) { return ArrayOf(self.image); })
        .def_readonly("source_id", &PartObject::sourceId)
        .def_readonly("region_id", &PartObject::regionId)
        .def_readonly("purpose_id", &PartObject::purposeId);
    py::class_<Frame, Owned<Frame>>(module, "Frame",
                                    "A frame in a buffer of the stream, which goes back to the "
                                    "camera when the frame and all its arrays are gone.")
        .def_property_readonly("id", &Frame::id, Unlocked(), "The camera's number of the frame.")
        .def_property_readonly("timestamp", &Frame::timestamp, Unlocked(),
                               "The time of the camera, in its ticks.")
        .def_property_readonly("is_complete", &Frame::isComplete, Unlocked())
        .def_property_readonly("missed", &Frame::missed, "Frames lost before this one.")
        .def("image", &ImageOfFrame, py::arg("format") = "", py::arg("edge_aware") = false,
             Unlocked(), "The image, or what it becomes in another pixel format, such as \"RGB8\".")
        .def_property_readonly(
            "array",
            [](const Frame& self) {
                ImageObject image;
                {
                    const py::gil_scoped_release unlocked;
                    image = ImageOf(self.image());
                }
                return ArrayOf(image);
            },
            "A numpy view of the image; no copy.")
        .def_property_readonly("parts", &PartsOf, Unlocked())
        .def_property_readonly("chunks", &ChunksOf, "What the camera sent with it, by feature.")
        .def(
            "copy", [](const Frame& self) { return Hold(self.copy()); }, Unlocked(),
            "A frame with memory of its own.");
}

}  // namespace

FramesObject::FramesObject(zel::Camera& camera, const zel::FrameOptions& options)
    : numBuffers_(options.buffers), frames_(camera.frames(options)) {}

Owned<Frame> FramesObject::Next() {
    Owned<Frame> frame = Fetch();
    if (frame) return frame;
    {
        const py::gil_scoped_release unlocked;
        frames_.stop();
    }
    throw py::stop_iteration();
}

Owned<Frame> FramesObject::Fetch() {
    std::optional<Frame> frame;
    {
        const py::gil_scoped_release unlocked;
        frame = frames_.next();
    }
    if (!frame) return nullptr;
    WarnOfStarvation();
    return Hold(std::move(*frame));
}

// Not more than once a second.
void FramesObject::WarnOfStarvation() {
    const auto now = std::chrono::steady_clock::now();
    if (now - lookedAt_ < std::chrono::seconds(1)) return;
    lookedAt_ = now;
    const uint64_t lost = frames_.numUnderrun();
    if (lost == numLost_) return;
    const std::string text =
        std::to_string(lost - std::exchange(numLost_, lost)) +
        " frames were lost because the program had all " + std::to_string(numBuffers_) +
        " buffers: it keeps frames or arrays (copy() keeps none), or is slower than the camera";
    const py::object category = py::module_::import("zelcam._errors").attr("StarvationWarning");
    if (PyErr_WarnEx(category.ptr(), text.c_str(), 1) != 0) throw py::error_already_set();
}

void AddFrames(py::module_& module) {
    AddFrame(module);
    py::class_<FramesObject, Owned<FramesObject>>(
        module, "Frames", "Frames as they come. They start the camera, and stop it at their end.")
        .def("__iter__", [](py::object self) { return self; })
        .def("__next__", &FramesObject::Next)
        .def("fetch", &FramesObject::Fetch, "The next frame; None after the last one.")
        .def("cancel", &FramesObject::Cancel, Unlocked(), "End the loop of another thread.")
        .def("stop", &FramesObject::Stop, Unlocked(), "Stop the camera now.")
        .def_property_readonly("underruns", &FramesObject::NumUnderrun, Unlocked(),
                               "Frames lost because the program had all buffers.")
        .def("__enter__", [](py::object self) { return self; })
        .def("__exit__", [](FramesObject& self, const py::args&) {
            const py::gil_scoped_release unlocked;
            self.Stop();
        });
}

}  // namespace ZelPython
