// Whether the time for one of many things stays the same when there are more of them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/report.h"

namespace Bench {

// One quantity of one thing, measured at several sizes.
struct GrowingQuantity {
    std::string name;  // "time to open, per camera"
    std::string unit;
    std::optional<double> limit;  // of the ratio of the largest size to the smallest
};

// Calls `measure` with every size in turn, `rounds` times; it returns a value for each quantity.
// Each quantity becomes a figure for each size, compared with the smallest one.
void AddGrowth(Report& report, const std::string& group, const std::string& thing,
               const std::vector<size_t>& sizes, int rounds,
               const std::vector<GrowingQuantity>& quantities,
               const std::function<std::vector<double>(size_t size)>& measure);

}  // namespace Bench
