// Opening a camera: until its first frame, the features of a first and of a second camera of the
// same model; and thousands of times opening, reading a feature and closing, which must leave
// nothing behind.
#include "ZelGenParam/Array.h"
#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"
#include "tests/support/processstate.h"

namespace Bench {

namespace {

constexpr size_t kBuffers = 4;
constexpr int kRounds = 31;
constexpr int kOpenings = 10000;
constexpr int kWarmUp = 1000;
constexpr double kToleratedKiB = 1024;

ZelGenParam::Array& FeaturesOf(const LibraryCamera& camera) {
    ZelGenParam::Array* const features = camera.Device().GetCameraParameters(nullptr);
    Require(features != nullptr, "no features");
    return *features;
}

template <typename SessionCamera>
double MsToFirstFrame(const typename SessionCamera::Host& host) {
    const int64_t start = Now();
    const SessionCamera camera(host);
    camera.Announce(kBuffers);
    camera.Start();
    camera.AwaitFrame();
    const int64_t end = Now();
    camera.Stop();
    return static_cast<double>(end - start) / 1e6;
}

void MeasureFirstFrame(Report& report, const LibraryHost& libraryHost) {
    const BareHost bareHost;
    std::vector<double> library;
    std::vector<double> bare;
    Interleave(
        kRounds, [&] { library.push_back(MsToFirstFrame<LibraryCamera>(libraryHost)); },
        [&] { bare.push_back(MsToFirstFrame<BareCamera>(bareHost)); });
    report.Add({"opening", "CreateDevice to the first frame", "ms", library, "bare GenTL", bare});
}

// The description of a model is gone with the last camera of it.
void MeasureFirstFeatures(Report& report, const LibraryHost& host) {
    std::vector<double> first;
    std::vector<double> second;
    for (int round = 0; round < kRounds; ++round) {
        const LibraryCamera one(host, 0);
        const LibraryCamera other(host, 1);
        first.push_back(TimeOf([&] { FeaturesOf(one); }) / 1e6);
        second.push_back(TimeOf([&] { FeaturesOf(other); }) / 1e6);
    }
    report.Add({"opening", "GetCameraParameters, first camera", "ms", first});
    report.Add(
        {"opening", "GetCameraParameters, second camera", "ms", second, "first camera", first});
}

void OpenReadClose(const LibraryHost& host) {
    const LibraryCamera camera(host);
    ZelCamErr err = ZelCamErr_Error;
    Keep(FeaturesOf(camera).GetStringValue("DeviceModelName", &err));
    Require(err == ZelCamErr_Success, "the feature does not read");
}

void MeasureOpenings(Report& report, const LibraryHost& host) {
    for (int i = 0; i < kWarmUp; ++i)
        OpenReadClose(host);
    const auto before = ZelTest::ProcessState::Now();
    std::vector<double> times(kOpenings);
    for (double& time : times)
        time = TimeOf([&] { OpenReadClose(host); }) / 1e6;
    const auto after = ZelTest::ProcessState::Now();
    Require(after.threads == before.threads, "threads are left");
    Require(after.descriptors == before.descriptors, "descriptors are left");
    report.Add({"opening", "open, read a feature, close", "ms", {Median(std::move(times))}});
    report.Add({"opening",
                "memory grown in 10,000 times that",
                "KiB",
                {static_cast<double>(after.residentKiB - before.residentKiB)},
                "",
                {},
                kToleratedKiB,
                true});
}

}  // namespace

void MeasureOpening(Report& report) {
    Simulator::Get().ConfigureCameras(2, "frameRate='0' noFill='true'");
    const LibraryHost host;
    MeasureFirstFrame(report, host);
    MeasureFirstFeatures(report, host);
    MeasureOpenings(report, host);
}

}  // namespace Bench
