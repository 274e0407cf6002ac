// Vectors of sixteen bytes, as the compilers know them on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

using Vector8 = uint8_t __attribute__((vector_size(16)));
using Vector16 = uint16_t __attribute__((vector_size(16)));
using Vector32 = uint32_t __attribute__((vector_size(16)));

constexpr size_t kVectorBytes = 16;

// From and to any address.
template <typename Vector>
inline Vector Load(const void* from) {
    Vector vector;
    memcpy(&vector, from, sizeof vector);
    return vector;
}

template <typename Vector>
inline void Store(const Vector& vector, void* to) {
    memcpy(to, &vector, sizeof vector);
}

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
