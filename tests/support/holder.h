// Ends an object of the library the way the library wants it.
#pragma once

#include <memory>

namespace ZelTest {

struct Releaser {
    template <typename T>
    void operator()(T* object) const {
        object->Release();
    }
};
template <typename T>
using Holder = std::unique_ptr<T, Releaser>;

}  // namespace ZelTest
