#include "tools/zelcam/streamchecks.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <dlfcn.h>
#include <memory>
#include <thread>

#include "producers/simulator/zelsim.h"
#include "tools/zelcam/checklist.h"
#include "tools/zelcam/failure.h"
#include "tools/zelcam/framestatistics.h"
#include "tools/zelcam/pause.h"
#include "tools/zelcam/words.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr size_t buffers = 8;

void Require(bool condition, const std::string& otherwise) {
    if (!condition) throw Failure(ExitCode::CheckFailed, otherwise);
}

void RequireSuccess(ZelCamErr code, const std::string& what) {
    Require(code == ZelCamErr_Success, what + ": " + ErrorWords(code));
}

int64_t MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration_cast<milliseconds>(Clock::now() - start).count();
}

// Buffers without an acquisition.
class Buffers {
  public:
    explicit Buffers(ZelCam::Stream& stream) : stream_(stream) {
        const size_t count = std::max(buffers, stream.GetMinNumBuffers());
        RequireSuccess(stream.AllocBufferQueue(nullptr, count), "buffers cannot be made");
    }
    ~Buffers() {
        stream_.StopAcquisition(ZelCam::StopFlag_Kill);
        stream_.ReleaseBufferQueue();
    }
    Buffers(const Buffers&) = delete;
    Buffers& operator=(const Buffers&) = delete;

  private:
    ZelCam::Stream& stream_;
};

void FetchFrames(Acquisition& acquisition, uint64_t count, uint64_t timeoutMs,
                 FrameStatistics& statistics) {
    for (uint64_t i = 0; i < count; ++i) {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* const buffer = acquisition.WaitForFrame(timeoutMs, &code);
        Require(buffer != nullptr,
                "frame " + std::to_string(i + 1) + " does not come: " + ErrorWords(code));
        statistics.Add(buffer->GetFrameID(), buffer->IsIncomplete(), Clock::now());
        acquisition.Requeue(*buffer);
    }
}

// Fetches a frame of a stream that was started.
void FetchFrame(ZelCam::Stream& stream, uint64_t timeoutMs, const std::string& when) {
    ZelCamErr code = ZelCamErr_Success;
    ZelCam::Buffer* const buffer = stream.GetBuffer(timeoutMs, &code);
    Require(buffer != nullptr, "no frame " + when + ": " + ErrorWords(code));
    RequireSuccess(stream.QueueBuffer(buffer), "a buffer cannot be queued again " + when);
}

void Start(ZelCam::Stream& stream, const std::string& when) {
    RequireSuccess(stream.StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default),
                   "the acquisition does not start " + when);
}

void Stop(ZelCam::Stream& stream, uint32_t flags, const std::string& when) {
    RequireSuccess(stream.StopAcquisition(flags), "the acquisition does not stop " + when);
    Require(!stream.IsGrabbing(), "the stream is still grabbing after a stop " + when);
}

// The function of the simulator behind the camera; null for other producers.
PZelSim_UnplugCamera FindUnplug(const std::string& producer) {
    const std::unique_ptr<void, int (*)(void*)> library(
        dlopen(producer.c_str(), RTLD_NOW | RTLD_NOLOAD),
        [](void* handle) { return handle != nullptr ? dlclose(handle) : 0; });
    if (library == nullptr) return nullptr;
    // The session keeps the producer loaded.
    return reinterpret_cast<PZelSim_UnplugCamera>(dlsym(library.get(), "ZelSim_UnplugCamera"));
}

}  // namespace

std::string CheckFrames(ZelCam::Stream& stream, const GrabLimits& limits) {
    FrameStatistics statistics;
    Acquisition acquisition(stream, buffers);
    FetchFrames(acquisition, limits.count, limits.timeoutMs, statistics);
    const uint64_t underruns = stream.GetNumUnderrun();
    Require(statistics.Lost() == 0 && statistics.Incomplete() == 0,
            std::to_string(statistics.Lost()) + " lost, " +
                std::to_string(statistics.Incomplete()) + " incomplete, " +
                std::to_string(underruns) + " under-run of " + std::to_string(limits.count));
    return std::to_string(limits.count) + " frames, " +
           std::to_string(static_cast<int64_t>(statistics.FramesPerSecond())) + " a second";
}

std::string CheckStartStop(ZelCam::Stream& stream, uint64_t timeoutMs) {
    stream.StopAcquisition(ZelCam::StopFlag_Default);  // without a start: any answer will do
    const Buffers queue(stream);
    for (const uint32_t first : {ZelCam::StopFlag_Default, ZelCam::StopFlag_Kill}) {
        for (const uint32_t second : {ZelCam::StopFlag_Default, ZelCam::StopFlag_Kill}) {
            Start(stream, "at first");
            Stop(stream, first, "without a frame");
            Start(stream, "after a stop without a frame");
            FetchFrame(stream, timeoutMs, "after a stop without a frame");
            Require(stream.ReleaseBufferQueue() == ZelCamErr_AcquisitionActive,
                    "buffers can be revoked while the stream is grabbing");
            Stop(stream, second, "after a frame");
            stream.StopAcquisition(second);  // once more
        }
    }
    RequireSuccess(stream.FlushBuffers(ZelCam::FlushOperation::AllDiscard),
                   "buffers cannot be discarded");
    Start(stream, "after all buffers were discarded");
    FetchFrame(stream, timeoutMs, "after all buffers were discarded");
    return "9 starts";
}

std::string CheckCountedFrames(ZelCam::Stream& stream, uint64_t timeoutMs) {
    constexpr uint64_t count = 3;
    const Buffers queue(stream);
    RequireSuccess(stream.StartAcquisition(count, ZelCam::StartFlag_Default),
                   "the acquisition does not start");
    for (uint64_t i = 0; i < count; ++i)
        FetchFrame(stream, timeoutMs, "of those that were asked for");
    ZelCamErr code = ZelCamErr_Success;
    Require(stream.GetBuffer(sliceMs, &code) == nullptr, "one frame more than asked for");
    return std::to_string(count) + " frames";
}

std::string CheckTimeout(ZelCam::Stream& stream) {
    constexpr uint64_t waitMs = 200;
    const Clock::time_point start = Clock::now();
    ZelCamErr code = ZelCamErr_Success;
    Require(stream.GetBuffer(waitMs, &code) == nullptr, "a frame without an acquisition");
    Require(code == ZelCamErr_GenTL_Timeout, "the wait ends with: " + ErrorWords(code));
    const int64_t took = MillisecondsSince(start);
    Require(took >= static_cast<int64_t>(waitMs) / 2,
            "the wait of " + std::to_string(waitMs) + " ms takes " + std::to_string(took));
    return std::to_string(took) + " ms for " + std::to_string(waitMs);
}

std::string CheckCancel(ZelCam::Stream& stream) {
    constexpr uint64_t longWaitMs = 10000;
    std::atomic<bool> ended = false;
    ZelCamErr code = ZelCamErr_Success;
    const Clock::time_point start = Clock::now();
    std::thread waiting([&] {
        stream.GetBuffer(longWaitMs, &code);
        ended = true;
    });
    // A cancel may come before the wait has begun.
    while (!ended) {
        stream.CancelBuffer();
        std::this_thread::sleep_for(milliseconds(10));
    }
    waiting.join();
    Require(code == ZelCamErr_GenTL_Abort, "the wait ends with: " + ErrorWords(code));
    return "after " + std::to_string(MillisecondsSince(start)) + " ms";
}

std::string CheckSearch(OpenedCamera& camera, uint64_t timeoutMs) {
    constexpr int searches = 3;
    constexpr uint64_t searchMs = 200;
    ZelCam::Interface& interface = *camera.Info().info->GetInterface();
    FrameStatistics statistics;
    Acquisition acquisition(camera.Stream(), buffers);
    for (int i = 0; i < searches; ++i) {
        bool changed = false;
        RequireSuccess(interface.ReEnumerateDevices(&changed, searchMs),
                       "cameras cannot be looked for");
        FetchFrames(acquisition, 2, timeoutMs, statistics);
    }
    Require(interface.GetDeviceInfoById(camera.Info().id.c_str()) != nullptr,
            "the camera is not found any more");
    return std::to_string(searches) + " searches, " + std::to_string(statistics.Frames()) +
           " frames";
}

std::string CheckUnplug(OpenedCamera& camera, const std::string& producer) {
    const PZelSim_UnplugCamera unplug = FindUnplug(producer);
    if (unplug == nullptr) throw Skip("this is no simulated camera");
    constexpr uint64_t waitMs = 2000;
    FrameStatistics statistics;
    Acquisition acquisition(camera.Stream(), buffers);
    FetchFrames(acquisition, 1, waitMs, statistics);
    Require(unplug(camera.Info().id.c_str()) == 0, "the simulator does not unplug it");
    ZelCamErr code = ZelCamErr_Success;
    for (size_t i = 0; i <= buffers && code == ZelCamErr_Success; ++i)  // frames on the way
        acquisition.WaitForFrame(waitMs, &code);
    Require(code != ZelCamErr_Success && code != ZelCamErr_GenTL_Timeout,
            "the wait does not end with an error: " + ErrorWords(code));
    return "the wait ends with: " + ErrorWords(code);
}
