#include "producers/simulator/camera/camera.h"

#include <algorithm>

#include "producers/server/base/error.h"

namespace ZelSim {

using ZelCti::Claim;
using ZelCti::Error;
using ZelCti::IpSettings;
using ZelCti::MakeClaim;

namespace {

constexpr uint64_t kNsPerSecond = 1000000000;

}  // namespace

Camera::Camera(CameraConfig config, std::string tlType, PermanentMemory memory)
    : config_(std::move(config)),
      tlType_(std::move(tlType)),
      memory_(std::move(memory)),
      control_(memory_.userSets.at(memory_.defaultUserSet)),
      events_(tlType_) {
    events_.Follow(control_);
}

void Camera::CheckPlugged() const {
    if (!IsPlugged()) throw Error(GenTL::GC_ERR_IO, config_.id + " is unplugged");
}

Claim Camera::Connect(bool controls) {
    const auto connect = [this] {
        CheckPlugged();
        const std::lock_guard lock(mutex_);
        ++numConnected_;
    };
    return MakeClaim(connect, [this, controls] {
        if (controls) {
            acquisition_.Abort();
            control_.LockByClient(false);
        }
        const std::lock_guard lock(mutex_);
        --numConnected_;
    });
}

void Camera::Unplug() {
    plugged_.store(false);
    acquisition_.Unplug();
    events_.ReportLoss();
}

PermanentMemory Camera::CopyMemory() const {
    const std::lock_guard lock(mutex_);
    return memory_;
}

std::string Camera::UserName() const {
    const std::lock_guard lock(mutex_);
    return memory_.userName;
}

void Camera::SetUserName(const std::string& name) {
    const std::lock_guard lock(mutex_);
    memory_.userName = name;
}

IpSettings Camera::Ip() const {
    const std::lock_guard lock(mutex_);
    return ip_;
}

void Camera::ForceIp(const IpSettings& ip) {
    CheckPlugged();
    const std::lock_guard lock(mutex_);
    if (numConnected_ != 0) throw Error(GenTL::GC_ERR_ACCESS_DENIED, config_.id + " is open");
    ip_ = ip.address == 0 ? config_.ip : ip;
}

uint64_t Camera::UptimeAt(Frame::Clock::time_point time) const {
    const auto since = time - powerOn_;
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(since).count());
}

uint64_t Camera::NanosecondsAt(Frame::Clock::time_point time) const {
    const int64_t shown = static_cast<int64_t>(UptimeAt(time)) + clockAhead_.load();
    return static_cast<uint64_t>(std::max<int64_t>(shown, 0));
}

void Camera::SetClock(uint64_t nanoseconds) {
    clockAhead_ = static_cast<int64_t>(nanoseconds - Uptime());
}

uint64_t Camera::SystemNanoseconds() {
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
}

void Camera::Trigger(TriggerSource source) {
    if (Settings()->triggerSource == source) acquisition_.Trigger();
}

uint64_t Camera::Ticks(uint64_t nanoseconds) const {
    const uint64_t frequency = config_.timestampFrequency;
    return nanoseconds / kNsPerSecond * frequency +
           nanoseconds % kNsPerSecond * frequency / kNsPerSecond;
}

std::shared_ptr<const TestPicture> Camera::Picture(const FrameSettings& settings) {
    const std::lock_guard lock(pictureMutex_);
    if (picture_ == nullptr || !picture_->IsOf(settings)) {
        picture_ = std::make_shared<const TestPicture>(settings);
    }
    return picture_;
}

}  // namespace ZelSim
