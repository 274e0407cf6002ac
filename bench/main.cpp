// Benchmarks of ZelCam over the simulated cameras:
//
//   cameras   time and memory with one camera and many
//   frames    CPU time per frame and frames a second, through the library and without it
//   copies    bytes that are copied or allocated for a frame: none
//   latency   from the end of a frame to the thread that waits for it
//   events    from an event of a module to its callback
//   opening   opening a camera, its features, the first frame; and that nothing grows
//   features  reading and writing by name
//   devices   enumeration with many cameras on an interface
//   buffers   many buffers on a stream
//   wire      what a simulated camera on a network sends, and what that takes
//   hostile   descriptions made to take for ever
//
// Figures are medians of rounds; what is compared runs in turn with it, in the same process.
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <set>
#include <string>

#include "bench/groups.h"

namespace {

struct Group {
    const char* name;
    void (*measure)(Bench::Report& report);
};

// The first one measures memory, which whatever runs before would change.
constexpr Group kGroups[] = {
    {"cameras", Bench::MeasureCameras},   {"frames", Bench::MeasureFrames},
    {"copies", Bench::MeasureCopies},     {"latency", Bench::MeasureLatency},
    {"events", Bench::MeasureEvents},     {"opening", Bench::MeasureOpening},
    {"features", Bench::MeasureFeatures}, {"devices", Bench::MeasureDevices},
    {"buffers", Bench::MeasureBuffers},   {"wire", Bench::MeasureWire},
#ifdef BENCH_HOSTILE
    {"hostile", Bench::MeasureHostile},
#endif
};

struct Options {
    std::string json;
    std::set<std::string> groups;  // empty: all
};

bool IsGroup(const std::string& name) {
    for (const Group& group : kGroups)
        if (name == group.name) return true;
    return false;
}

bool ReadOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--json" && i + 1 < argc) {
            options.json = argv[++i];
        } else if (IsGroup(argument)) {
            options.groups.insert(argument);
        } else {
            return false;
        }
    }
    return true;
}

int PrintUsage() {
    std::cerr << "Usage: zelcam_bench [--json FILE] [GROUP...]\nGroups:";
    for (const Group& group : kGroups)
        std::cerr << ' ' << group.name;
    std::cerr << '\n';
    return 2;
}

int Run(const Options& options) {
    Bench::Report report;
    for (const Group& group : kGroups) {
        if (!options.groups.empty() && options.groups.count(group.name) == 0) continue;
        std::cerr << group.name << " ...\n";
        group.measure(report);
    }
    report.WriteTable(std::cout);
    if (!options.json.empty()) {
        std::ofstream file(options.json);
        report.WriteJson(file);
        if (!file.flush()) throw std::runtime_error(options.json + " cannot be written");
    }
    return report.HasErrors() ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Options options;
        return ReadOptions(argc, argv, options) ? Run(options) : PrintUsage();
    } catch (const std::exception& e) {
        fprintf(stderr, "zelcam_bench: %s\n", e.what());
        return 1;
    }
}
