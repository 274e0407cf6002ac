// What the parts of the extension share.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <pybind11/pybind11.h>

#include "ZelImage/ZelImage.h"
#include "zel/image.h"

namespace ZelPython {

namespace py = pybind11;

// Each adds its classes and functions.
void AddFeatures(py::module_& module);
void AddImages(py::module_& module);
void AddFrames(py::module_& module);
void AddCameras(py::module_& module);

// Other threads may run Python during all that may wait for a camera, and so may callbacks, which
// the thread that waits for them could otherwise never get.
using Unlocked = py::call_guard<py::gil_scoped_release>;

// For what ends: it may wait for a thread that calls back.
template <typename T>
struct UnlockedDelete {
    void operator()(T* object) const {
        const py::gil_scoped_release unlocked;
        delete object;
    }
};
template <typename T>
using Owned = std::unique_ptr<T, UnlockedDelete<T>>;

// A Python function that any thread may call and forget. What it raises is printed, as there is
// nobody to catch it.
class Callback {
  public:
    explicit Callback(py::function function)
        : function_(new py::function(std::move(function)), [](py::function* last) {
              const py::gil_scoped_acquire gil;
              delete last;
          }) {}

    template <typename... Arguments>
    void operator()(Arguments&&... arguments) const {
        const py::gil_scoped_acquire gil;
        try {
            (*function_)(std::forward<Arguments>(arguments)...);
        } catch (py::error_already_set& error) {
            error.discard_as_unraisable("a callback of zelcam");
        }
    }

  private:
    std::shared_ptr<py::function> function_;
};

// An image that Python sees: of a frame, or converted.
struct ImageObject {
    std::shared_ptr<const void> keep;
    ZelImage::View view;
};

ImageObject ImageOf(const zel::Image& image);
ImageObject Convert(const ImageObject& image, const std::string& format, bool edgeAware);

// A numpy array on the memory of the image, which it keeps.
py::object ArrayOf(const ImageObject& image);

}  // namespace ZelPython
