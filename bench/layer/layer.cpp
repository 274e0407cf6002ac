// The layer for short programs beside what it is made of: the frame loop of an application beside
// the bare GenTL loop, opening and features beside the interfaces, and frames in Python beside the
// layer.
#include <chrono>
#include <malloc.h>
#include <sstream>
#include <string>
#include <vector>

#include "ZelGenParam/Array.h"
#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/process.h"
#include "bench/session.h"
#include "zel/camera.h"

namespace Bench {

namespace {

constexpr const char* kGroup = "layer";
constexpr size_t kBuffers = 8;
constexpr int kFrameRounds = 31;
constexpr int kFrames = 20000;
constexpr int kFeatureRounds = 31;
constexpr int kCalls = 20000;
constexpr int kOpenings = 31;

// What a loop costs does not depend on what the camera does beside it, so it fills no pictures.
constexpr const char* kLarge = "width='4096' height='3000' frameRate='0' noFill='true'";
constexpr const char* kSmall = "width='640' height='480' frameRate='0' noFill='true'";

double LayerFrame(const BareHost& /*host*/) {
    zel::Camera camera = zel::open(CameraId(0));
    zel::FrameOptions options;
    options.buffers = kBuffers;
    zel::Frames frames = camera.frames(options);
    const auto next = [&frames] { Keep(frames.next()->timestamp()); };
    for (size_t i = 0; i < 2 * kBuffers; ++i)
        next();
    return TimeOf([&] {
               for (int i = 0; i < kFrames; ++i)
                   next();
           }) /
           kFrames;
}

double BareFrame(const BareHost& host) {
    const BareCamera camera(host);
    camera.Announce(kBuffers);
    camera.Start();
    for (size_t i = 0; i < 2 * kBuffers; ++i)
        camera.NextFrame();
    const double time = TimeOf([&] {
        for (int i = 0; i < kFrames; ++i)
            Keep(camera.NextFrame());
    });
    camera.Stop();
    return time / kFrames;
}

struct PythonFrames {
    std::vector<double> ns;  // a frame, of each round
    double grownKiB;         // in a million frames
};

// As frames.py prints them. It runs alone.
PythonFrames MeasurePython(const char* camera) {
    Process python({BENCH_PYTHON, BENCH_PYTHON_FILE, BENCH_PYTHON_PACKAGES, camera,
                    std::to_string(kFrameRounds), std::to_string(kFrames),
                    std::to_string(kBuffers)});
    Require(python.Await(std::chrono::minutes(5)), "Python does not end");
    std::istringstream output(python.Output());
    std::vector<double> times;
    for (double time = 0; output >> time;)
        times.push_back(time);
    if (times.size() != kFrameRounds + 1) throw std::runtime_error(python.Output());
    const double grown = times.back();
    times.pop_back();
    return {std::move(times), grown};
}

void MeasureFrameLoops(Report& report, const std::string& name, const char* attributes) {
    constexpr double kMostOfBare = 1.1;
    constexpr double kMostOfPython = 10'000;  // ns
    constexpr double kToleratedKiB = 1024;
    Simulator::Get().ConfigureCameras(1, attributes);
    std::vector<double> layer;
    std::vector<double> bare;
    {
        const BareHost host;
        Interleave(
            kFrameRounds, [&] { layer.push_back(LayerFrame(host)); },
            [&] { bare.push_back(BareFrame(host)); });
    }
    report.Add(
        {kGroup, "CPU time per frame, " + name, "ns", layer, "bare GenTL loop", bare, kMostOfBare});
    PythonFrames python = MeasurePython(attributes);
    for (double& time : python.ns)
        time -= Median(layer);
    report.Add({kGroup,
                "CPU time per frame in Python, beyond that, " + name,
                "ns",
                python.ns,
                "",
                {},
                kMostOfPython});
    report.Add({kGroup,
                "memory grown in a million frames in Python, " + name,
                "KiB",
                {python.grownKiB},
                "",
                {},
                kToleratedKiB});
}

// Each feature is looked up by its name every time, on both sides.
void MeasureFeatureAccess(Report& report) {
    constexpr double kMost = 1.2;
    Simulator::Get().ConfigureCameras(2, "");
    const LibraryHost host;
    const LibraryCamera other(host, 1);
    ZelGenParam::Array* const features = other.Device().GetCameraParameters(nullptr);
    Require(features != nullptr, "no features");
    const zel::Camera camera = zel::open(CameraId(0));
    struct Reading {
        const char* feature;
        const char* name;
    };
    const auto measure = [&](const std::string& name, const auto& throughLayer,
                             const auto& through) {
        std::vector<double> layer;
        std::vector<double> interface;
        Interleave(
            kFeatureRounds, [&] { layer.push_back(TimeOfCall(kCalls, throughLayer)); },
            [&] { interface.push_back(TimeOfCall(kCalls, through)); });
        report.Add({kGroup, name, "ns", layer, "the interfaces", interface, kMost});
    };
    for (const Reading& reading : {Reading{"SensorWidth", "reading a feature, cached"},
                                   Reading{"LineStatusAll", "reading a feature, not cached"}}) {
        measure(
            reading.name, [&](int) { Keep(camera[reading.feature].as<int64_t>()); },
            [&](int) {
                ZelCamErr err = ZelCamErr_Error;
                Keep(features->GetIntegerValue(reading.feature, &err));
                Require(err == ZelCamErr_Success, "the feature does not read");
            });
    }
    const auto width = [](int call) { return call % 2 == 0 ? 320 : 640; };
    measure(
        "setting a feature", [&](int call) { camera["Width"] = width(call); },
        [&](int call) {
            Require(features->SetIntegerValue("Width", width(call)) == 0, "no write");
        });
}

void MeasureOpenings(Report& report) {
    constexpr double kMost = 1.2;
    // A heap that shrinks after one camera and grows for the next takes as long as the opening, and
    // which side it hits depends on what happens to lie at its end.
    mallopt(M_TRIM_THRESHOLD, 256 << 20);
    Simulator::Get().ConfigureCameras(1, "");
    std::vector<double> layer;
    std::vector<double> interfaces;
    Interleave(
        kOpenings,
        [&] {
            layer.push_back(TimeOf([] {
                                const zel::Camera camera = zel::open(CameraId(0));
                                Keep(camera["SensorWidth"].as<int64_t>());
                            }) /
                            1e6);
        },
        [&] {
            interfaces.push_back(
                TimeOf([] {
                    const LibraryHost host;
                    const LibraryCamera camera(host);
                    Keep(camera.Device().GetCameraParameters(nullptr)->GetIntegerValue(
                        "SensorWidth", nullptr));
                }) /
                1e6);
        });
    report.Add({kGroup, "opening, to a feature", "ms", layer, "the interfaces", interfaces, kMost});
}

}  // namespace

void MeasureLayer(Report& report) {
    MeasureFrameLoops(report, "VGA", kSmall);
    MeasureFrameLoops(report, "12 MP", kLarge);
    MeasureFeatureAccess(report);
    MeasureOpenings(report);
}

}  // namespace Bench
