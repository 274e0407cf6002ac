// A simulated camera.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "gentl/GenTL.h"
#include "producers/server/base/claim.h"
#include "producers/simulator/camera/acquisition.h"
#include "producers/simulator/camera/cameracontrol.h"
#include "producers/simulator/camera/eventchannel.h"
#include "producers/simulator/camera/permanentmemory.h"
#include "producers/simulator/config/config.h"
#include "producers/simulator/frame/frame.h"
#include "producers/simulator/frame/testpicture.h"

namespace ZelSim {

// The hardware, which every client that opens the camera works with: settings, acquisition, events,
// clock and picture. Its registers are CameraFeatures. Once unplugged it stays so; a camera that is
// plugged in again is another object. Thread-safe.
class Camera {
  public:
    // How many action signals trigger it when it is on a network.
    static constexpr uint32_t kNumActionSignals = 4;

    Camera(CameraConfig config, std::string tlType, PermanentMemory memory);

    const std::string& Id() const { return config_.id; }
    const CameraConfig& Config() const { return config_; }
    const std::string& TlType() const { return tlType_; }

    // The byte order of event messages and of the trailers of chunks.
    ZelCti::ByteOrder WireOrder() const { return EventFormOf(tlType_).order; }

    // The byte order of its registers and of the values in its chunks.
    ZelCti::ByteOrder Order() const {
        return config_.bigEndian ? ZelCti::ByteOrder::Big : ZelCti::ByteOrder::Little;
    }

    CameraControl& Control() { return control_; }
    std::shared_ptr<const FrameSettings> Settings() const { return control_.Settings(); }
    EventChannel& Events() { return events_; }
    Acquisition& GetAcquisition() { return acquisition_; }

    bool IsPlugged() const { return plugged_.load(std::memory_order_relaxed); }
    void CheckPlugged() const;  // throws GC_ERR_IO
    void Unplug();

    // A client uses the camera until the claim is given back. When one that `controls` it goes, the
    // camera sends nothing on its own, and the next client finds no locks. Throws GC_ERR_IO for a
    // camera that is unplugged.
    ZelCti::Claim Connect(bool controls);

    // What it keeps without power, but the name below; guarded by the lock of the register space.
    PermanentMemory& Memory() { return memory_; }

    // All of it; with the register space locked.
    PermanentMemory CopyMemory() const;

    // What the user calls the camera.
    std::string UserName() const;
    void SetUserName(const std::string& name);

    // As GigE cameras have them.
    ZelCti::IpSettings Ip() const;

    // Gives the camera other settings until it is unplugged; the address 0 gives it the settings of
    // its configuration again. Throws GC_ERR_ACCESS_DENIED while anyone has it open.
    void ForceIp(const ZelCti::IpSettings& ip);

    // Nanoseconds since the power came.
    uint64_t Uptime() const { return UptimeAt(Frame::Clock::now()); }

    // The clock of the time stamps, in nanoseconds and in ticks. It starts at 0 with the power, and
    // can be set; before its zero it stands at 0.
    uint64_t Nanoseconds() const { return NanosecondsAt(Frame::Clock::now()); }
    uint64_t NanosecondsAt(Frame::Clock::time_point time) const;
    uint64_t Ticks(uint64_t nanoseconds) const;
    void SetClock(uint64_t nanoseconds);

    // The clock of the computer, which clocks that agree show.
    static uint64_t SystemNanoseconds();

    // A trigger from there, which counts if the settings choose that source.
    void Trigger(TriggerSource source);

    // What frames with these settings show; rendered when it differs from the picture before.
    std::shared_ptr<const TestPicture> Picture(const FrameSettings& settings);

  private:
    uint64_t UptimeAt(Frame::Clock::time_point time) const;

    const CameraConfig config_;
    const std::string tlType_;
    PermanentMemory memory_;
    CameraControl control_;
    EventChannel events_;
    const Frame::Clock::time_point powerOn_ = Frame::Clock::now();
    std::atomic<int64_t> clockAhead_{0};  // of the time since power-on, in ns
    std::atomic<bool> plugged_{true};
    mutable std::mutex mutex_;
    size_t numConnected_ = 0;             // guarded by mutex_, as the name in the memory
    ZelCti::IpSettings ip_ = config_.ip;  // guarded by mutex_
    std::mutex pictureMutex_;
    std::shared_ptr<const TestPicture> picture_;  // guarded by pictureMutex_
    Acquisition acquisition_{*this};
};

}  // namespace ZelSim
