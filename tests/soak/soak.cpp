// Four simulated cameras send frames as fast as these are taken, while other threads change
// features, look for cameras and cancel waits, and events arrive. No frame may be lost, and nothing
// may grow. Usage: zelcam_soak SECONDS

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "tests/support/holder.h"
#include "tests/support/processstate.h"
#include "tests/support/simulator.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A picture is drawn anew after each change of its exposure. Under ThreadSanitizer nearly all of
// the time would go there, and few frames would meet anything.
#ifdef __SANITIZE_THREAD__
#define SOAK_IMAGE " width='320' height='240' frameRate='0' noFill='true'"
#else
#define SOAK_IMAGE " width='320' height='240' frameRate='0'"
#endif

constexpr const char* kCameras =
    "<ZelSim>"
    "<Interface id='eth0' type='GEV'><Camera id='a'" SOAK_IMAGE
    "/><Camera id='b' pixelFormat='BGR8'" SOAK_IMAGE
    "/></Interface>"
    "<Interface id='usb0' type='U3V'><Camera id='c'" SOAK_IMAGE
    "/></Interface>"
    "<Interface id='cxp0' type='CXP'><Camera id='d' pixelFormat='Mono16'" SOAK_IMAGE
    "/></Interface></ZelSim>";
constexpr const char* kInterfaces[] = {"eth0", "eth0", "usb0", "cxp0"};
constexpr const char* kIdentifiers[] = {"a", "b", "c", "d"};

void Require(bool condition, const std::string& otherwise) {
    if (!condition) throw std::runtime_error(otherwise);
}

void RequireSuccess(ZelCamErr code, const std::string& what) {
    Require(code == ZelCamErr_Success, what + ": " + std::to_string(code));
}

using ZelTest::Holder;

// A camera with its stream started, and what happened to it.
class Camera {
  public:
    Camera(ZelCam::System& system, const char* interface, const char* id) : id_(id) {
        ZelCam::DeviceInfo* const info = system.GetInterfaceById(interface)->GetDeviceInfoById(id);
        ZelCamErr code = ZelCamErr_Error;
        device_.reset(ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, &code));
        RequireSuccess(code, "open " + id_);
        features_ = device_->GetCameraParameters(&code);
        RequireSuccess(code, "features of " + id_);
        SwitchEventsOn();
        stream_ = device_->GetStreamByIndex(0);
        Require(stream_ != nullptr, "stream of " + id_);
        RequireSuccess(stream_->AllocBufferQueue(nullptr, 8), "buffers of " + id_);
        RequireSuccess(stream_->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default),
                       "start of " + id_);
        RequireSuccess(features_->SetIntegerValue("TLParamsLocked", 1), "lock of " + id_);
        RequireSuccess(features_->ExecuteCommand("AcquisitionStart"), "start of camera " + id_);
    }

    // Takes a frame, if the wait for it is not cancelled.
    void TakeFrame() {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* const buffer = stream_->GetBuffer(10000, &code);
        if (code == ZelCamErr_GenTL_Abort) {
            ++cancelled_;
            return;
        }
        RequireSuccess(code, "frame of " + id_);
        const uint64_t frame = buffer->GetFrameID();
        // Numbers of GigE Vision have 16 bits, and leave out 0.
        const bool follows = frame == last_ + 1 || (last_ == 65535 && frame == 1) || frames_ == 0;
        Require(follows,
                id_ + ": frame " + std::to_string(frame) + " after " + std::to_string(last_));
        Require(!buffer->IsIncomplete(), id_ + ": an incomplete frame");
        last_ = frame;
        ++frames_;
        RequireSuccess(stream_->QueueBuffer(buffer), "queue of " + id_);
    }

    void ChangeFeatures() {
        const double exposure = 100.0 + static_cast<double>(changes_ % 1000);
        RequireSuccess(features_->SetFloatValue("ExposureTime", exposure), "write of " + id_);
        ZelCamErr code = ZelCamErr_Success;
        features_->GetFloatValue("ExposureTime", &code);
        RequireSuccess(code, "read of " + id_);
        features_->GetStringValue("DeviceModelName", &code);
        RequireSuccess(code, "text of " + id_);
        ++changes_;
    }

    void Cancel() { stream_->CancelBuffer(); }

    uint64_t Frames() const { return frames_; }
    uint64_t Cancelled() const { return cancelled_; }
    uint64_t Changes() const { return changes_; }
    uint64_t Events() const { return sink_.calls; }

  private:
    struct Sink final : ZelGenParam::ParamEventSink {
        void OnParamChanged(ZelGenParam::Param* /*param*/) override { ++calls; }
        std::atomic<uint64_t> calls = 0;
    };

    // Not every transport has events.
    void SwitchEventsOn() {
        ZelGenParam::Param* const frame = features_->GetParam("EventExposureEndFrameID", nullptr);
        if (frame == nullptr) return;
        features_->SetEnumValueStr("EventSelector", "ExposureEnd");
        features_->SetEnumValueStr("EventNotification", "On");
        frame->RegisterEventSink(&sink_);
    }

    std::string id_;
    Sink sink_;  // outlives the features
    Holder<ZelCam::Device> device_;
    ZelGenParam::Array* features_ = nullptr;
    ZelCam::Stream* stream_ = nullptr;
    uint64_t last_ = 0;
    std::atomic<uint64_t> frames_ = 0;
    std::atomic<uint64_t> cancelled_ = 0;
    std::atomic<uint64_t> changes_ = 0;
};

// Threads that do something again and again, until the first failure or the end.
class Workers {
  public:
    ~Workers() { Join(); }

    void Add(milliseconds pause, std::function<void()> work) {
        threads_.emplace_back([this, pause, work = std::move(work)] {
            while (!ended_) {
                try {
                    work();
                } catch (const std::exception& error) {
                    std::fprintf(stderr, "%s\n", error.what());
                    failed_ = true;
                    ended_ = true;
                }
                if (pause.count() > 0) std::this_thread::sleep_for(pause);
            }
        });
    }

    bool Failed() const { return failed_; }

    void Join() {
        ended_ = true;
        for (std::thread& thread : threads_)
            thread.join();
        threads_.clear();
    }

  private:
    std::atomic<bool> ended_ = false;
    std::atomic<bool> failed_ = false;
    std::vector<std::thread> threads_;
};

void PrintState(const char* when, const ZelTest::ProcessState& state) {
    std::printf("%-10s %8ld KiB resident, %ld threads, %ld descriptors\n", when, state.residentKiB,
                state.threads, state.descriptors);
    std::fflush(stdout);
}

// Waits for a time, or the first failure.
void Wait(const Workers& workers, std::chrono::seconds time) {
    const Clock::time_point end = Clock::now() + time;
    while (Clock::now() < end && !workers.Failed())
        std::this_thread::sleep_for(milliseconds(100));
}

bool Grew(const ZelTest::ProcessState& before, const ZelTest::ProcessState& after) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZELCAM_EMULATED)
    const bool memory = false;  // what is resident is the sanitizer, or the emulator
#else
    constexpr long kToleratedKiB = 2048;
    const bool memory = after.residentKiB > before.residentKiB + kToleratedKiB;
#endif
    return memory || after.threads > before.threads || after.descriptors > before.descriptors;
}

bool Soak(std::chrono::seconds time) {
    const Holder<ZelCam::System> system(ZelCam_GetSystem());
    Require(system != nullptr, "no System");
    std::vector<std::unique_ptr<Camera>> all;
    for (size_t i = 0; i < std::size(kIdentifiers); ++i)
        all.push_back(std::make_unique<Camera>(*system, kInterfaces[i], kIdentifiers[i]));

    Workers workers;
    for (const auto& camera : all) {
        workers.Add(milliseconds(0), [&] { camera->TakeFrame(); });
        workers.Add(milliseconds(5), [&] { camera->ChangeFeatures(); });
        workers.Add(milliseconds(17), [&] { camera->Cancel(); });
    }
    for (const char* id : {"eth0", "usb0", "cxp0"}) {
        ZelCam::Interface* const interface = system->GetInterfaceById(id);
        workers.Add(milliseconds(50), [interface] {
            RequireSuccess(interface->ReEnumerateDevices(nullptr, 10), "search");
        });
    }

    // What is made once is made in the first tenth.
    Wait(workers, time / 10 + std::chrono::seconds(1));
    const auto before = ZelTest::ProcessState::Now();
    PrintState("before", before);
    Wait(workers, time);
    const auto after = ZelTest::ProcessState::Now();
    PrintState("after", after);
    workers.Join();

    for (size_t i = 0; i < all.size(); ++i) {
        std::printf("%s: %lu frames, %lu cancelled waits, %lu changes, %lu events\n",
                    kIdentifiers[i], static_cast<unsigned long>(all[i]->Frames()),
                    static_cast<unsigned long>(all[i]->Cancelled()),
                    static_cast<unsigned long>(all[i]->Changes()),
                    static_cast<unsigned long>(all[i]->Events()));
        Require(all[i]->Frames() > 0 && all[i]->Changes() > 0, "nothing happened");
    }
    return !workers.Failed() && !Grew(before, after);
}

}  // namespace

int main(int argc, char** argv) {
    const long seconds = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (seconds <= 0) {
        std::fputs("Usage: zelcam_soak SECONDS\n", stderr);
        return 2;
    }
    try {
        const ZelTest::Simulator simulator;
        Require(simulator.configure(kCameras) == 0, "the simulator cannot be configured");
        const bool good = Soak(std::chrono::seconds(seconds));
        Require(simulator.openHandles() == 0, "handles are left open");
        std::puts(good ? "soak: passed" : "soak: FAILED");
        return good ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak: %s\n", error.what());
        return 1;
    }
}
