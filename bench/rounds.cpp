// Opening a camera of the simulator, reading its first feature, closing it again: the time of a
// round, and what ten thousand of them leave behind. Anything left is an error.
#include <benchmark/benchmark.h>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "bench/simulator.h"
#include "tests/support/processstate.h"

namespace Bench {

namespace {

constexpr int kRounds = 10000;
constexpr long kToleratedKiB = 1024;

bool OpenReadClose() {
    ZelCam::Device* const camera =
        ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Exclusive, nullptr);
    if (camera == nullptr) return false;
    ZelCamErr err = ZelCamErr_Error;
    ZelGenParam::Array* const features = camera->GetCameraParameters(&err);
    if (features) benchmark::DoNotOptimize(features->GetStringValue("DeviceModelName", &err));
    camera->Release();
    return err == ZelCamErr_Success;
}

void Rounds(benchmark::State& state) {
    Simulator::Get().Configure(
        "<ZelSim><Interface id='BENCH' type='GEV'><Camera id='BENCH-CAM'/></Interface></ZelSim>");
    for (int i = 0; i < kRounds / 10; ++i)
        OpenReadClose();
    const auto before = ZelTest::ProcessState::Now();
    for (auto _ : state) {
        if (!OpenReadClose()) return state.SkipWithError("the camera does not open or read");
    }
    const auto after = ZelTest::ProcessState::Now();
    state.counters["KiB grown"] = static_cast<double>(after.residentKiB - before.residentKiB);
    if (after.threads != before.threads) return state.SkipWithError("threads are left");
    if (after.descriptors != before.descriptors) return state.SkipWithError("descriptors are left");
    if (after.residentKiB - before.residentKiB > kToleratedKiB) state.SkipWithError("memory grows");
}

}  // namespace

BENCHMARK(Rounds)->Iterations(kRounds)->Repetitions(1)->Unit(benchmark::kMicrosecond);

}  // namespace Bench
