#include <pybind11/pybind11.h>

#include "python/bindings.h"
#include "zel/error.h"

namespace py = pybind11;

namespace {

// Error is a class of the package, so that Python code can say what it derives from.
// pybind11 takes a function of these types.
void Translate(std::exception_ptr failure) {  // NOLINT(performance-unnecessary-value-param)
    try {
        if (failure) std::rethrow_exception(failure);
    } catch (const zel::Error& error) {
        const py::module_ errors = py::module_::import("zelcam._errors");
        const py::object raised = errors.attr("make")(static_cast<int>(error.code()), error.what(),
                                                      error.operation(), error.feature());
        PyErr_SetObject(py::type::handle_of(raised).ptr(), raised.ptr());
    }
}

}  // namespace

PYBIND11_MODULE(_zelcam, module) {
    module.doc() = "The extension behind the package zelcam.";
    py::register_exception_translator(&Translate);
    ZelPython::AddFeatures(module);
    ZelPython::AddImages(module);
    ZelPython::AddFrames(module);
    ZelPython::AddCameras(module);
}
