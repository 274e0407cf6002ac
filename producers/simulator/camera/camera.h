// A simulated camera.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "gentl/GenTL.h"
#include "producers/server/base/answer.h"
#include "producers/server/base/claim.h"
#include "producers/server/base/object.h"
#include "producers/server/registers/registerspace.h"
#include "producers/simulator/camera/acquisition.h"
#include "producers/simulator/camera/cameracontrol.h"
#include "producers/simulator/camera/eventchannel.h"
#include "producers/simulator/config/config.h"
#include "producers/simulator/features/camerafeatures.h"
#include "producers/simulator/frame/frame.h"
#include "producers/simulator/frame/testpicture.h"
#include "producers/wire/eventmessage.h"

namespace ZelSim {

// The hardware behind the device modules: every client that opens the camera works with the same
// object. It keeps who has it open, its registers, its clock and its picture. Once unplugged it
// stays so; a camera plugged again is another object. Thread-safe.
class Camera : public std::enable_shared_from_this<Camera> {
  public:
    Camera(CameraConfig config, std::string tlType);

    const std::string& Id() const { return config_.id; }
    const CameraConfig& Config() const { return config_; }
    const std::string& TlType() const { return tlType_; }

    // Of what the transport adds to the data of the camera.
    ByteOrder WireOrder() const { return EventFormOf(tlType_).order; }

    const std::shared_ptr<RegisterSpace>& Registers() const { return registers_; }
    CameraControl& Control() { return control_; }
    std::shared_ptr<const FrameSettings> Settings() const { return control_.Settings(); }
    EventChannel& Events() { return events_; }
    Acquisition& GetAcquisition() { return acquisition_; }
    const CameraFeatures& Features() const { return features_; }

    bool IsPlugged() const { return plugged_.load(std::memory_order_relaxed); }
    void CheckPlugged() const;  // throws GC_ERR_IO
    void Unplug();

    // Opens the camera for a client (a system module). Throws GC_ERR_RESOURCE_IN_USE when another
    // open excludes it, GC_ERR_INVALID_PARAMETER for an access that is none.
    Claim Open(GenTL::DEVICE_ACCESS_FLAGS access, Handle client);

    // What the user calls the camera.
    std::string UserName() const;
    void SetUserName(const std::string& name);

    // As GigE cameras have them.
    IpSettings Ip() const;

    // Gives the camera other settings until it is unplugged; those of the beginning for the address
    // 0. Throws GC_ERR_ACCESS_DENIED while anyone has it open.
    void ForceIp(const IpSettings& ip);

    // Device info commands, as this client sees the camera.
    void GetInfo(Answer answer, Handle client) const;

    // Nanoseconds on the clock of the camera, and the same in its ticks.
    uint64_t Nanoseconds() const { return NanosecondsAt(Frame::Clock::now()); }
    uint64_t NanosecondsAt(Frame::Clock::time_point time) const;
    uint64_t Ticks(uint64_t nanoseconds) const;

    // What frames with these settings show; rendered when it differs from the picture before.
    std::shared_ptr<const TestPicture> Picture(const FrameSettings& settings);

  private:
    struct Opened {
        GenTL::DEVICE_ACCESS_FLAGS access;
        Handle client;
    };

    void OnReleased();
    GenTL::DEVICE_ACCESS_STATUS AccessStatus(Handle client) const;
    bool IsOpen(GenTL::DEVICE_ACCESS_FLAGS access) const;
    std::string DisplayName() const;

    const CameraConfig config_;
    const std::string tlType_;
    const std::shared_ptr<RegisterSpace> registers_;
    CameraControl control_;
    EventChannel events_;
    const Frame::Clock::time_point powerOn_ = Frame::Clock::now();
    std::atomic<bool> plugged_{true};
    mutable std::mutex mutex_;
    std::map<uint64_t, Opened> opened_;  // guarded by mutex_
    std::atomic<uint64_t> nextOpened_{0};
    std::string userName_;        // guarded by mutex_
    IpSettings ip_ = config_.ip;  // guarded by mutex_
    std::mutex pictureMutex_;
    std::shared_ptr<const TestPicture> picture_;  // guarded by pictureMutex_
    Acquisition acquisition_{*this};
    CameraFeatures features_;  // after all that its registers work on
};

}  // namespace ZelSim
