// Conversion of floating-point numbers to integers, for values that pass between Float and Integer
// nodes.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

constexpr int64_t kInt64Min = std::numeric_limits<int64_t>::min();
constexpr int64_t kInt64Max = std::numeric_limits<int64_t>::max();
constexpr double kDoubleMax = std::numeric_limits<double>::max();

// Rounds half away from zero and saturates. NaN has no nearest integer and becomes the smallest
// one.
inline int64_t RoundToInt(double value) {
    if (std::isnan(value)) return kInt64Min;
    if (value >= 9223372036854775808.0) return kInt64Max;
    if (value <= -9223372036854775808.0) return kInt64Min;
    return static_cast<int64_t>(std::round(value));
}

// The nearest value of the grid ..., min - inc, min, min + inc, ...; the lower one of two equally
// near values.
inline int64_t RoundToGrid(int64_t value, int64_t min, int64_t inc) {
    if (inc <= 1) return value;
    // Distances fit in uint64_t, but not always in int64_t.
    const auto unsignedOf = [](int64_t number) { return static_cast<uint64_t>(number); };
    const uint64_t step = unsignedOf(inc);
    uint64_t above;  // distance from the grid value below
    if (value >= min) {
        above = (unsignedOf(value) - unsignedOf(min)) % step;
    } else {
        const uint64_t below = (unsignedOf(min) - unsignedOf(value)) % step;
        above = below == 0 ? 0 : step - below;
    }
    const uint64_t below = step - above;
    const bool fitsAbove = below <= unsignedOf(kInt64Max) - unsignedOf(value);
    const bool fitsBelow = above <= unsignedOf(value) - unsignedOf(kInt64Min);
    const bool up = fitsAbove && (above > below || !fitsBelow);
    return static_cast<int64_t>(unsignedOf(value) + (up ? below : 0 - above));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
