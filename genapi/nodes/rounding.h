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

// The value of the grid min, min + inc, ... that is nearest; of two equally near the lower one.
inline std::int64_t roundToGrid(std::int64_t value, std::int64_t min, std::int64_t inc) {
    if (inc <= 1 || value <= min) return value;
    // The distance may exceed int64, not uint64.
    const std::uint64_t step = static_cast<std::uint64_t>(inc);
    const std::uint64_t distance =
        static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(min);
    const std::uint64_t rest = distance % step;
    std::uint64_t rounded = distance - rest;
    if (rest > step - rest && rounded <= std::numeric_limits<std::uint64_t>::max() - step)
        rounded += step;
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(min) + rounded);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
