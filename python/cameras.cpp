#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "python/bindings.h"
#include "python/frames.h"
#include "zel/camera.h"

namespace ZelPython {

namespace {

using zel::Camera;

std::chrono::milliseconds Milliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<int64_t>(seconds * 1000));
}

std::vector<std::string> Names(const std::vector<std::filesystem::path>& files) {
    std::vector<std::string> names;
    names.reserve(files.size());
    for (const auto& file : files)
        names.push_back(file.string());
    return names;
}

// Ctrl-C ends a wait.
void CheckSignals() {
    const py::gil_scoped_acquire gil;
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

Owned<FramesObject> FramesOf(Camera& camera, std::optional<uint64_t> count, size_t buffers,
                             double timeout, bool newestOnly, bool reconnect,
                             std::optional<double> reconnectTime) {
    zel::FrameOptions options;
    options.count = count;
    options.buffers = buffers;
    options.timeout = Milliseconds(timeout);
    options.newestOnly = newestOnly;
    options.reconnect = reconnect;
    if (reconnectTime) options.reconnectTime = Milliseconds(*reconnectTime);
    options.whileWaiting = &CheckSignals;
    return Owned<FramesObject>(new FramesObject(camera, options));
}

std::vector<std::string> FeatureNames(const Camera& camera, zel::Module module) {
    std::vector<std::string> names;
    for (const zel::Feature& feature : camera.of(module).all())
        names.push_back(feature.name());
    return names;
}

Owned<zel::Subscription> On(Camera& camera, const std::string& name, py::function function) {
    Callback call(std::move(function));
    const py::gil_scoped_release unlocked;
    return Owned<zel::Subscription>(
        new zel::Subscription(camera.on(name, [call](const zel::Event& event) { call(event); })));
}

void OnLost(Camera& camera, py::function function) {
    Callback call(std::move(function));
    const py::gil_scoped_release unlocked;
    camera.onLost([call](const zel::Error& error) { call(std::string(error.what())); });
}

void AddInfo(py::module_& module) {
    py::class_<zel::CameraInfo>(module, "CameraInfo", "A camera as it was found.")
        .def_readonly("id", &zel::CameraInfo::id)
        .def_readonly("vendor", &zel::CameraInfo::vendor)
        .def_readonly("model", &zel::CameraInfo::model)
        .def_readonly("serial", &zel::CameraInfo::serial)
        .def_readonly("user_name", &zel::CameraInfo::userName)
        .def_readonly("interface_id", &zel::CameraInfo::interfaceId)
        .def_readonly("is_simulated", &zel::CameraInfo::isSimulated)
        .def("__repr__",
             [](const zel::CameraInfo& self) { return "<CameraInfo " + self.description() + ">"; });
    py::class_<zel::Difference>(module, "Difference", "A feature that differs from saved settings.")
        .def_readonly("feature", &zel::Difference::feature)
        .def_readonly("saved", &zel::Difference::saved)
        .def_readonly("current", &zel::Difference::current)
        .def("__repr__", [](const zel::Difference& self) {
            return "<Difference " + self.feature + ": saved " + self.saved + ", current " +
                   self.current + ">";
        });
    py::class_<zel::Event>(module, "Event", "An event of a camera, during its call.")
        .def_property_readonly("name", &zel::Event::name)
        .def("__getitem__", &zel::Event::operator[]);
    py::enum_<zel::DeviceAccess>(module, "Access", "How a camera is opened.")
        .value("READ_ONLY", zel::DeviceAccess::ReadOnly)
        .value("CONTROL", zel::DeviceAccess::Control)
        .value("EXCLUSIVE", zel::DeviceAccess::Exclusive);
}

void AddFunctions(py::module_& module) {
    module.def(
        "cameras",
        [](const std::vector<std::filesystem::path>& producers, double time) {
            zel::SearchOptions options;
            options.producers = Names(producers);
            options.time = Milliseconds(time);
            const zel::CameraList found = zel::cameras(options);
            return std::pair(std::vector<zel::CameraInfo>(found.begin(), found.end()),
                             found.problems());
        },
        py::arg("producers"), py::arg("time"), Unlocked());
    module.def(
        "open",
        [](const std::string& name, const std::vector<std::filesystem::path>& producers,
           zel::DeviceAccess access, double time) {
            zel::OpenOptions options;
            options.producers = Names(producers);
            options.access = access;
            options.time = Milliseconds(time);
            return Owned<Camera>(new Camera(zel::open(name, options)));
        },
        py::arg("name"), py::arg("producers"), py::arg("access"), py::arg("time"), Unlocked());
}

}  // namespace

void AddCameras(py::module_& module) {
    AddInfo(module);
    py::class_<Camera, Owned<Camera>>(module, "Camera")
        .def("close", &Camera::close, Unlocked())
        .def("cancel", &Camera::cancel, Unlocked())
        .def_property_readonly("info", &Camera::info)
        .def(
            "has",
            [](const Camera& self, const std::string& name, zel::Module of) {
                return self.of(of).has(name);
            },
            Unlocked())
        .def("feature", [](const Camera& self, const std::string& name,
                           zel::Module of) { return self.of(of)[name]; })
        .def("feature_names", &FeatureNames, Unlocked())
        .def("frames", &FramesOf, py::arg("count"), py::arg("buffers"), py::arg("timeout"),
             py::arg("newest_only"), py::arg("reconnect"), py::arg("reconnect_time"), Unlocked())
        .def("on", &On)
        .def("on_lost", &OnLost)
        .def("save", &Camera::save, Unlocked())
        .def("load", &Camera::load, Unlocked())
        .def("diff", &Camera::diff, Unlocked());
    AddFunctions(module);
}

}  // namespace ZelPython
