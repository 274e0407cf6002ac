// Benchmarks of ZelCam:
//
//   frameloop.cpp  CPU time per frame and frames a second, through the library and without it
//   rounds.cpp     ten thousand times opening a camera, reading a feature, closing it: nothing
//   grows
//
// The cases run several times in random order, so that a pair is compared under the same
// conditions; at the end stand the ratios of their medians. All options of Google Benchmark work.
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace {

// Shows the results as usual and keeps the median CPU time per frame of each case.
class PairReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.aggregate_name != "median") continue;
            const std::string& name = run.run_name.function_name;
            nanoseconds_[name] = run.GetAdjustedCPUTime();
        }
    }

    void PrintRatios() const {
        printf("\nCPU time per frame, medians\n%-14s %12s %12s %8s\n", "camera", "bare", "library",
               "ratio");
        const std::string prefix = "BareLoop/";
        for (const auto& [name, bare] : nanoseconds_) {
            if (name.compare(0, prefix.size(), prefix) != 0) continue;
            const std::string camera = name.substr(prefix.size());
            const auto library = nanoseconds_.find("LibraryLoop/" + camera);
            if (library == nanoseconds_.end()) continue;
            printf("%-14s %9.0f ns %9.0f ns %8.2f\n", camera.c_str(), bare, library->second,
                   library->second / bare);
        }
    }

  private:
    std::map<std::string, double> nanoseconds_;
};

// Options of the command line come after these and win.
int Run(int argc, char** argv) {
    std::vector<std::string> options = {
        argv[0], "--benchmark_repetitions=9", "--benchmark_min_time=0.2",
        "--benchmark_enable_random_interleaving=true", "--benchmark_display_aggregates_only=true"};
    options.insert(options.end(), argv + 1, argv + argc);
    std::vector<char*> arguments;
    arguments.reserve(options.size());
    for (std::string& option : options)
        arguments.push_back(option.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    PairReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintRatios();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& e) {
        fprintf(stderr, "zelcam_bench: %s\n", e.what());
        return 1;
    }
}
