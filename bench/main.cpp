// Benchmarks of ZelCam over the simulated cameras:
//
//   cameras   time and memory with one camera and many
//   frames    CPU time per frame and frames a second, through the library and without it
//   copies    bytes that are copied or allocated for a frame: none
//   latency   from the end of a frame to the thread that waits for it
//   events    from an event of a module to its callback
//   opening   opening a camera, its features, the first frame; and that nothing grows
//   features  reading and writing by name
//   layer     the layer for short programs and Python beside what they are made of
//   devices   enumeration with many cameras on an interface
//   buffers   many buffers on a stream
//   wire      what a simulated camera on a network sends, and what that takes
//   imaging   conversions of images, beside memcpy and OpenCV
//   hostile   descriptions made to take for ever
//
// Only when they are asked for, all of them as "gev", as they take longer than all others:
//
//   gev-loss    frames that an ordinary user does not get; with --long, in ten minutes each
//   gev-faults  the same on a network that loses, repeats and reorders packets
//   gev-cost    CPU time of the reception
//   gev-rate    the highest rate without loss
//   gev-many    eight cameras at once
//   gev-times   latency, the first frame, the loss of a camera
//
// Figures are medians of rounds; what is compared runs in turn with it, in the same process.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <string>

#include "bench/groups.h"

namespace {

struct Group {
    const char* name;
    void (*measure)(Bench::Report& report, bool isLong);
    bool isUsual = true;  // measured when no group is named
};

// For a group that has no long form.
template <void (*measure)(Bench::Report&)>
void Always(Bench::Report& report, bool /*isLong*/) {
    measure(report);
}

// The first one measures memory, which whatever runs before would change.
constexpr Group kGroups[] = {
    {"cameras", Always<Bench::MeasureCameras>},
    {"frames", Always<Bench::MeasureFrames>},
    {"copies", Always<Bench::MeasureCopies>},
    {"latency", Always<Bench::MeasureLatency>},
    {"events", Always<Bench::MeasureEvents>},
    {"opening", Always<Bench::MeasureOpening>},
    {"features", Always<Bench::MeasureFeatures>},
    {"layer", Always<Bench::MeasureLayer>},
    {"devices", Always<Bench::MeasureDevices>},
    {"buffers", Always<Bench::MeasureBuffers>},
    {"wire", Always<Bench::MeasureWire>},
    {"imaging", Always<Bench::MeasureImaging>},
#ifdef BENCH_HOSTILE
    {"hostile", Always<Bench::MeasureHostile>},
#endif
    {"gev-loss", Bench::MeasureGevLoss, false},
    {"gev-faults", Always<Bench::MeasureGevFaults>, false},
    {"gev-cost", Always<Bench::MeasureGevCost>, false},
    {"gev-rate", Always<Bench::MeasureGevRate>, false},
    {"gev-many", Always<Bench::MeasureGevMany>, false},
    {"gev-times", Always<Bench::MeasureGevTimes>, false},
};

struct Options {
    std::string json;
    std::set<std::string> groups;  // empty: the usual ones
    bool isLong = false;
};

// Whether `name` is that of a group, or of several: what it begins with before a "-".
bool Names(const std::string& name, const Group& group) {
    const std::string full = group.name;
    return full == name || full.compare(0, name.size() + 1, name + "-") == 0;
}

bool IsGroup(const std::string& name) {
    return std::any_of(std::begin(kGroups), std::end(kGroups),
                       [&](const Group& group) { return Names(name, group); });
}

bool IsWanted(const Group& group, const Options& options) {
    if (options.groups.empty()) return group.isUsual;
    return std::any_of(options.groups.begin(), options.groups.end(),
                       [&](const std::string& name) { return Names(name, group); });
}

bool ReadOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--json" && i + 1 < argc) {
            options.json = argv[++i];
        } else if (argument == "--long") {
            options.isLong = true;
        } else if (IsGroup(argument)) {
            options.groups.insert(argument);
        } else {
            return false;
        }
    }
    return true;
}

int PrintUsage() {
    std::cerr << "Usage: zelcam_bench [--json FILE] [--long] [GROUP...]\nGroups:";
    for (const Group& group : kGroups)
        std::cerr << ' ' << group.name;
    std::cerr << '\n';
    return 2;
}

int Run(const Options& options) {
    Bench::Report report;
    bool failed = false;
    for (const Group& group : kGroups) {
        if (!IsWanted(group, options)) continue;
        std::cerr << group.name << " ...\n";
        try {
            group.measure(report, options.isLong);
        } catch (const std::exception& e) {
            std::cerr << "zelcam_bench: " << group.name << ": " << e.what() << '\n';
            failed = true;
        }
    }
    report.WriteTable(std::cout);
    if (!options.json.empty()) {
        std::ofstream file(options.json);
        report.WriteJson(file);
        if (!file.flush()) throw std::runtime_error(options.json + " cannot be written");
    }
    return failed || report.HasErrors() ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    // Looking for GigE cameras sends broadcasts: a group that wants them says where.
    setenv("ZELGEV_INTERFACES", "none", 0);
    try {
        Options options;
        return ReadOptions(argc, argv, options) ? Run(options) : PrintUsage();
    } catch (const std::exception& e) {
        fprintf(stderr, "zelcam_bench: %s\n", e.what());
        return 1;
    }
}
