#include "tools/zelcam/checks/streamchecks.h"

#include <atomic>
#include <chrono>
#include <dlfcn.h>
#include <memory>
#include <thread>

#include "producers/simulator/zelsim.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/checks/checklist.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/frames/acquisition.h"
#include "tools/zelcam/frames/framestatistics.h"

namespace ZelTool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr size_t kBuffers = 8;

void Require(bool condition, const std::string& otherwise) {
    if (!condition) throw Failure(ExitCode::CheckFailed, otherwise);
}

int64_t MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<milliseconds>(Clock::now() - start).count();
}

// Runs `step`; a failure gets `when` in front.
template <typename Step>
void When(const std::string& when, Step step) {
    try {
        step();
    } catch (const Failure& failure) {
        throw Failure(ExitCode::CheckFailed, when + ": " + failure.what());
    }
}

void Start(Acquisition& acquisition, uint64_t frames = ZelCam::Infinite) {
    acquisition.Start(frames);
    if (acquisition.Camera().HasStarted() == CameraSide::Started::NotWritable) {
        throw Skip("AcquisitionStart is not writable: the camera cannot be started");
    }
}

void Stop(Acquisition& acquisition, uint32_t flags) {
    acquisition.Stop(flags);
    Require(!acquisition.Stream().IsGrabbing(), "the stream is still grabbing after a stop");
}

void FetchFrames(Acquisition& acquisition, uint64_t count, uint64_t timeoutMs,
                 FrameStatistics& statistics) {
    for (uint64_t i = 0; i < count; ++i) {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* const buffer = acquisition.WaitForFrame(timeoutMs, &code);
        Require(buffer != nullptr,
                "frame " + std::to_string(i + 1) + " does not arrive: " + ErrorWords(code));
        statistics.Add(buffer->GetFrameID(), buffer->IsIncomplete(), Clock::now());
        acquisition.Requeue(*buffer);
    }
}

void FetchFrame(Acquisition& acquisition, uint64_t timeoutMs) {
    FrameStatistics unused;
    FetchFrames(acquisition, 1, timeoutMs, unused);
}

// The function of the simulator that unplugs a camera; null for other producers.
PZelSim_UnplugCamera FindUnplug(const std::string& producer) {
    const std::unique_ptr<void, int (*)(void*)> library(
        dlopen(producer.c_str(), RTLD_NOW | RTLD_NOLOAD), dlclose);
    if (library == nullptr) return nullptr;
    // The session keeps the producer loaded.
    return reinterpret_cast<PZelSim_UnplugCamera>(dlsym(library.get(), "ZelSim_UnplugCamera"));
}

}  // namespace

std::string CheckFrames(OpenedCamera& camera, const GrabLimits& limits) {
    FrameStatistics statistics;
    Acquisition acquisition(camera, kBuffers);
    Start(acquisition);
    FetchFrames(acquisition, limits.count, limits.timeoutMs, statistics);
    const uint64_t underruns = acquisition.Stream().GetNumUnderrun();
    Require(statistics.Lost() == 0 && statistics.Incomplete() == 0,
            std::to_string(statistics.Lost()) + " lost, " +
                std::to_string(statistics.Incomplete()) + " incomplete, " +
                std::to_string(underruns) + " under-run of " + std::to_string(limits.count));
    acquisition.End();
    return std::to_string(limits.count) + " frames, " +
           std::to_string(static_cast<int64_t>(statistics.FramesPerSecond())) + " a second";
}

std::string CheckStartStop(OpenedCamera& camera, uint64_t timeoutMs) {
    ZelCam::Stream& stream = camera.Stream();
    stream.StopAcquisition(ZelCam::StopFlag_Default);  // without a start: any result is right
    Acquisition acquisition(camera, kBuffers);
    for (const uint32_t first : {ZelCam::StopFlag_Default, ZelCam::StopFlag_Kill}) {
        for (const uint32_t second : {ZelCam::StopFlag_Default, ZelCam::StopFlag_Kill}) {
            When("without a frame", [&] {
                Start(acquisition);
                Stop(acquisition, first);
            });
            When("after a stop without a frame", [&] {
                Start(acquisition);
                FetchFrame(acquisition, timeoutMs);
                Require(stream.ReleaseBufferQueue() == ZelCamErr_AcquisitionActive,
                        "buffers can be revoked while the stream is grabbing");
                Stop(acquisition, second);
            });
            stream.StopAcquisition(second);  // once more
        }
    }
    RequireSuccess(stream.FlushBuffers(ZelCam::FlushOperation::AllDiscard),
                   "buffers cannot be discarded", ExitCode::CheckFailed);
    When("after all buffers were discarded", [&] {
        Start(acquisition);
        FetchFrame(acquisition, timeoutMs);
    });
    acquisition.End();
    return "9 starts";
}

// Does not check the result of the stop: the producer has already stopped by itself.
std::string CheckCountedFrames(OpenedCamera& camera, uint64_t timeoutMs) {
    constexpr uint64_t kCount = 3;
    FrameStatistics statistics;
    Acquisition acquisition(camera, kBuffers);
    Start(acquisition, kCount);
    FetchFrames(acquisition, kCount, timeoutMs, statistics);
    ZelCamErr code = ZelCamErr_Success;
    Require(acquisition.WaitForFrame(kSliceMs, &code) == nullptr, "one frame too many arrives");
    return std::to_string(kCount) + " frames";
}

std::string CheckTimeout(ZelCam::Stream& stream) {
    constexpr uint64_t kWaitMs = 200;
    const Clock::time_point start = Clock::now();
    ZelCamErr code = ZelCamErr_Success;
    Require(stream.GetBuffer(kWaitMs, &code) == nullptr, "a frame arrives without an acquisition");
    Require(code == ZelCamErr_GenTL_Timeout, "the wait ends with: " + ErrorWords(code));
    const int64_t took = MillisecondsSince(start);
    Require(took >= static_cast<int64_t>(kWaitMs) / 2,
            "the wait of " + std::to_string(kWaitMs) + " ms takes " + std::to_string(took));
    return std::to_string(took) + " ms for " + std::to_string(kWaitMs);
}

std::string CheckCancel(ZelCam::Stream& stream) {
    constexpr uint64_t kLongWaitMs = 10000;
    std::atomic<bool> ended = false;
    ZelCamErr code = ZelCamErr_Success;
    const Clock::time_point start = Clock::now();
    std::thread waiting([&] {
        stream.GetBuffer(kLongWaitMs, &code);
        ended = true;
    });
    // A single cancel could come before the wait has begun.
    while (!ended) {
        stream.CancelBuffer();
        std::this_thread::sleep_for(milliseconds(10));
    }
    waiting.join();
    stream.GetBuffer(0, nullptr);  // consumes a cancel that came after the wait
    Require(code == ZelCamErr_GenTL_Abort, "the wait ends with: " + ErrorWords(code));
    return "after " + std::to_string(MillisecondsSince(start)) + " ms";
}

std::string CheckSearch(OpenedCamera& camera, uint64_t timeoutMs) {
    constexpr int kSearches = 3;
    constexpr uint64_t kSearchMs = 200;
    ZelCam::Interface& interface = *camera.Info().info->GetInterface();
    FrameStatistics statistics;
    Acquisition acquisition(camera, kBuffers);
    Start(acquisition);
    for (int i = 0; i < kSearches; ++i) {
        bool changed = false;
        RequireSuccess(interface.ReEnumerateDevices(&changed, kSearchMs),
                       "the search for cameras failed", ExitCode::CheckFailed);
        FetchFrames(acquisition, 2, timeoutMs, statistics);
    }
    acquisition.End();
    Require(interface.GetDeviceInfoById(camera.Info().id.c_str()) != nullptr,
            "the camera is not found any more");
    return std::to_string(kSearches) + " searches, " + std::to_string(statistics.Frames()) +
           " frames";
}

std::string CheckUnplug(OpenedCamera& camera, const std::string& producer) {
    const PZelSim_UnplugCamera unplug = camera.Info().simulated ? FindUnplug(producer) : nullptr;
    if (unplug == nullptr) throw Skip("this is not a simulated camera");
    constexpr uint64_t kWaitMs = 2000;
    FrameStatistics statistics;
    Acquisition acquisition(camera, kBuffers);
    Start(acquisition);
    FetchFrames(acquisition, 1, kWaitMs, statistics);
    Require(unplug(camera.Info().id.c_str()) == 0, "the simulator does not unplug it");
    ZelCamErr code = ZelCamErr_Success;
    for (size_t i = 0; i <= kBuffers && code == ZelCamErr_Success; ++i)  // frames sent before
        acquisition.WaitForFrame(kWaitMs, &code);
    Require(code != ZelCamErr_Success && code != ZelCamErr_GenTL_Timeout,
            "the wait does not end with an error: " + ErrorWords(code));
    return "the wait ends with: " + ErrorWords(code);
}

}  // namespace ZelTool
