// From floating point to integers, as values pass between Float and Integer nodes.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();
constexpr double kDoubleMax = std::numeric_limits<double>::max();

// Half away from zero; saturated. A NaN is no value in range: it becomes the least number.
inline std::int64_t roundToInt(double value) {
    if (std::isnan(value)) return kInt64Min;
    if (value >= 9223372036854775808.0) return kInt64Max;
    if (value <= -9223372036854775808.0) return kInt64Min;
    return static_cast<std::int64_t>(std::round(value));
}

// The value of the grid ..., min - inc, min, min + inc, ... that is nearest; of two equally near
// the lower one.
inline std::int64_t roundToGrid(std::int64_t value, std::int64_t min, std::int64_t inc) {
    if (inc <= 1) return value;
    // Distances may exceed int64, not uint64.
    const auto unsignedOf = [](std::int64_t number) { return static_cast<std::uint64_t>(number); };
    const std::uint64_t step = unsignedOf(inc);
    std::uint64_t above;  // how far value lies above the grid
    if (value >= min) {
        above = (unsignedOf(value) - unsignedOf(min)) % step;
    } else {
        const std::uint64_t below = (unsignedOf(min) - unsignedOf(value)) % step;
        above = below == 0 ? 0 : step - below;
    }
    const std::uint64_t below = step - above;
    const bool fitsAbove = below <= unsignedOf(kInt64Max) - unsignedOf(value);
    const bool fitsBelow = above <= unsignedOf(value) - unsignedOf(kInt64Min);
    const bool up = fitsAbove && (above > below || !fitsBelow);
    return static_cast<std::int64_t>(unsignedOf(value) + (up ? below : 0 - above));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
