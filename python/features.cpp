#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/bindings.h"
#include "zel/feature.h"

namespace ZelPython {

namespace {

using zel::Feature;
using zel::Kind;

// The value in the type of Python that fits its kind.
py::object Get(const Feature& feature) {
    Kind kind{};
    int64_t number = 0;
    double real = 0;
    std::string text;
    {
        const py::gil_scoped_release unlocked;
        kind = feature.kind();
        if (kind == Kind::Integer || kind == Kind::Boolean) {
            number = feature.as<int64_t>();
        } else if (kind == Kind::Float) {
            real = feature.as<double>();
        } else {
            text = feature.text();
        }
    }
    if (kind == Kind::Integer) return py::int_(number);
    if (kind == Kind::Boolean) return py::bool_(number != 0);
    if (kind == Kind::Float) return py::float_(real);
    return py::str(text);
}

// Also numbers of numpy and members of an enum, which say how they become an int or a float.
void Set(const Feature& feature, const py::object& value) {
    if (py::isinstance<py::bool_>(value)) {
        const auto truth = value.cast<bool>();
        const py::gil_scoped_release unlocked;
        return feature.set(truth);
    }
    if (py::isinstance<py::str>(value)) {
        const auto text = value.cast<std::string>();
        const py::gil_scoped_release unlocked;
        return feature.set(text);
    }
    if (PyIndex_Check(value.ptr()) != 0) {
        const auto number = py::int_(value).cast<int64_t>();
        const py::gil_scoped_release unlocked;
        return feature.set(number);
    }
    const auto real = py::float_(value).cast<double>();
    const py::gil_scoped_release unlocked;
    feature.set(real);
}

// A limit in the type of the value.
template <typename Limit>
py::object LimitOf(const Feature& feature, Limit limit) {
    Kind kind{};
    int64_t number = 0;
    double real = 0;
    {
        const py::gil_scoped_release unlocked;
        kind = feature.kind();
        if (kind == Kind::Integer) {
            number = limit(feature, int64_t{});
        } else {
            real = limit(feature, double{});
        }
    }
    if (kind == Kind::Integer) return py::int_(number);
    return py::float_(real);
}

void AddKinds(py::module_& module) {
    py::enum_<Kind>(module, "Kind", "What a feature takes and gives.")
        .value("INTEGER", Kind::Integer)
        .value("FLOAT", Kind::Float)
        .value("TEXT", Kind::Text)
        .value("ENUMERATION", Kind::Enumeration)
        .value("BOOLEAN", Kind::Boolean)
        .value("COMMAND", Kind::Command)
        .value("CATEGORY", Kind::Category)
        .value("OTHER", Kind::Other);
    py::enum_<zel::Module>(module, "Module", "Whose features.")
        .value("CAMERA", zel::Module::Camera)
        .value("TRANSPORT", zel::Module::Transport)
        .value("STREAM", zel::Module::Stream)
        .value("INTERFACE", zel::Module::Interface);
}

}  // namespace

void AddFeatures(py::module_& module) {
    AddKinds(module);
    py::class_<zel::Subscription, Owned<zel::Subscription>>(
        module, "Subscription", "Keeps a function subscribed until end() or its own end.")
        .def("end", &zel::Subscription::end, Unlocked())
        .def("__enter__", [](py::object self) { return self; })
        .def("__exit__", [](zel::Subscription& self, const py::args&) {
            const py::gil_scoped_release unlocked;
            self.end();
        });
    py::class_<Feature>(module, "Feature", "One feature of a camera, by its name.")
        .def_property_readonly("name", &Feature::name)
        .def_property("value", &Get, &Set, "The value, as int, float, bool or str.")
        .def_property_readonly("text", &Feature::text, Unlocked(), "The value as a text.")
        .def(
            "execute",
            [](const Feature& self, double timeout) {
                self.execute(std::chrono::milliseconds(static_cast<int64_t>(timeout * 1000)));
            },
            py::arg("timeout") = 5.0, Unlocked(), "Execute a command and wait until it is done.")
        .def_property_readonly("min",
                               [](const Feature& self) {
                                   return LimitOf(self, [](const Feature& one, auto zero) {
                                       return one.min<decltype(zero)>();
                                   });
                               })
        .def_property_readonly("max",
                               [](const Feature& self) {
                                   return LimitOf(self, [](const Feature& one, auto zero) {
                                       return one.max<decltype(zero)>();
                                   });
                               })
        .def_property_readonly("increment", &Feature::increment, Unlocked())
        .def_property_readonly("unit", &Feature::unit, Unlocked())
        .def_property_readonly("entries", &Feature::entries, Unlocked())
        .def_property_readonly("kind", &Feature::kind, Unlocked())
        .def_property_readonly("display_name", &Feature::displayName, Unlocked())
        .def_property_readonly("description", &Feature::description, Unlocked())
        .def_property_readonly("tool_tip", &Feature::toolTip, Unlocked())
        .def_property_readonly("is_available", &Feature::isAvailable, Unlocked())
        .def_property_readonly("is_readable", &Feature::isReadable, Unlocked())
        .def_property_readonly("is_writable", &Feature::isWritable, Unlocked())
        .def_property_readonly("is_streamable", &Feature::isStreamable, Unlocked())
        .def("at", &Feature::at, py::arg("selector"), py::arg("value"),
             "The feature as it is under a value of its selector.")
        .def(
            "on_change",
            [](const Feature& self, py::function function) {
                Callback call(std::move(function));
                const py::gil_scoped_release unlocked;
                return Owned<zel::Subscription>(new zel::Subscription(
                    self.onChange([call](const Feature& changed) { call(changed); })));
            },
            py::arg("function"));
}

}  // namespace ZelPython
