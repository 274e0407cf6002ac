// Measuring in a process of its own, for what the memory of this one would hide.
#pragma once

#include <functional>
#include <vector>

namespace Bench {

// Runs `work` in a fork of this process and returns its numbers. Throws when the work throws or the
// child ends otherwise. Only while this process has one thread.
std::vector<double> InChild(const std::function<std::vector<double>()>& work);

}  // namespace Bench
