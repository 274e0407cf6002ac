#include "bench/measure.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <stdexcept>

namespace Bench {

int64_t Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

int64_t CpuTimeOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return int64_t{time.tv_sec} * 1000000000 + time.tv_nsec;
}

int64_t ThreadCpuTime() {
    return CpuTimeOf(CLOCK_THREAD_CPUTIME_ID);
}

double Percentile(std::vector<double> values, double share) {
    if (values.empty()) throw std::logic_error("a percentile of nothing");
    const double last = static_cast<double>(values.size() - 1);
    const auto place = static_cast<std::ptrdiff_t>(std::lround(share * last));
    std::nth_element(values.begin(), values.begin() + place, values.end());
    return values[static_cast<size_t>(place)];
}

double Median(std::vector<double> values) {
    return Percentile(std::move(values), 0.5);
}

}  // namespace Bench
