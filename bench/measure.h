// Clocks and the statistics of rounds.
#pragma once

#include <cstdint>
#include <ctime>
#include <utility>
#include <vector>

namespace Bench {

// In nanoseconds.
int64_t Now();  // the clock of std::chrono::steady_clock
int64_t CpuTimeOf(clockid_t clock);
int64_t ThreadCpuTime();  // of the calling thread

double Median(std::vector<double> values);

// The value below which the share `share` (0 to 1) of the values lies.
double Percentile(std::vector<double> values, double share);

// Nanoseconds of the calling thread that `work` takes: another program on the same processor does
// not count, nor does waiting.
template <typename Work>
double TimeOf(Work&& work) {
    const int64_t start = ThreadCpuTime();
    std::forward<Work>(work)();
    return static_cast<double>(ThreadCpuTime() - start);
}

// The same for one of so many calls of `work(i)`.
template <typename Work>
double TimeOfCall(int calls, Work&& work) {
    return TimeOf([&] {
               for (int i = 0; i < calls; ++i)
                   work(i);
           }) /
           calls;
}

// Rounds of two things that are compared, in turn; which comes first changes, so that neither
// always runs in the other's wake.
template <typename One, typename Other>
void Interleave(int rounds, One&& one, Other&& other) {
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 0) one();
        other();
        if (round % 2 != 0) one();
    }
}

// Keeps the compiler from leaving out the computation of a value.
template <typename T>
void Keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

}  // namespace Bench
