// A borrowed run of elements: the part of C++20's std::span that the engine needs.
#pragma once

#include <cstddef>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename T>
class Slice {
  public:
    Slice() = default;
    Slice(const T* first, size_t count) : first_(first), count_(count) {}

    const T* begin() const { return first_; }
    const T* end() const { return first_ + count_; }
    size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    const T& operator[](size_t i) const { return first_[i]; }

  private:
    const T* first_ = nullptr;
    size_t count_ = 0;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
