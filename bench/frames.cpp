// The frame loop of an application, through the library and without it, over the same camera that
// delivers as fast as it can. Time is the CPU time of the thread that runs the loop; the camera has
// its own.
#include <string>

#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr size_t kBuffers = 8;

struct Camera {
    const char* name;
    const char* attributes;
    int rounds;
    int frames;  // of a round
};

// A large picture that is filled leaves nothing else in the caches, and its times scatter.
constexpr Camera kCameras[] = {
    {"VGA, no fill", "width='640' height='480' frameRate='0' noFill='true'", 15, 20000},
    {"VGA", "width='640' height='480' frameRate='0'", 15, 2000},
    {"12 MP, no fill", "width='4096' height='3000' frameRate='0' noFill='true'", 15, 20000},
    {"12 MP", "width='4096' height='3000' frameRate='0'", 101, 50},
};

// One value a round.
struct Loop {
    std::vector<double> cpuNs;
    std::vector<double> framesPerSecond;
};

template <typename SessionCamera>
void RunRound(const typename SessionCamera::Host& host, int frames, Loop& result) {
    const SessionCamera camera(host);
    camera.Announce(kBuffers);
    camera.Start();
    for (size_t i = 0; i < 2 * kBuffers; ++i)
        camera.NextFrame();
    const int64_t start = Now();
    const int64_t cpuStart = ThreadCpuTime();
    for (int i = 0; i < frames; ++i)
        Keep(camera.NextFrame());
    const auto cpu = static_cast<double>(ThreadCpuTime() - cpuStart);
    const auto time = static_cast<double>(Now() - start);
    camera.Stop();
    result.cpuNs.push_back(cpu / frames);
    result.framesPerSecond.push_back(1e9 * frames / time);
}

void Measure(Report& report, const Camera& camera) {
    Simulator::Get().ConfigureCameras(1, camera.attributes);
    const LibraryHost libraryHost;
    const BareHost bareHost;
    Loop library;
    Loop bare;
    Interleave(
        camera.rounds, [&] { RunRound<LibraryCamera>(libraryHost, camera.frames, library); },
        [&] { RunRound<BareCamera>(bareHost, camera.frames, bare); });
    const std::string name = camera.name;
    report.Add({"frames", "CPU time per frame, " + name, "ns", library.cpuNs, "bare GenTL loop",
                bare.cpuNs, 1.2});
    report.Add({"frames", "frames a second, " + name, "/s", library.framesPerSecond,
                "bare GenTL loop", bare.framesPerSecond});
}

}  // namespace

void MeasureFrames(Report& report) {
    for (const Camera& camera : kCameras)
        Measure(report, camera);
}

}  // namespace Bench
