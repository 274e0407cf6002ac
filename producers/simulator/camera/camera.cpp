#include "producers/simulator/camera/camera.h"

#include <algorithm>
#include <limits>

#include "producers/server/base/error.h"

namespace ZelSim {

namespace {

constexpr uint64_t kNsPerSecond = 1000000000;
constexpr int32_t kInfoUsbHost = 1100;  // of this producer: what the host of a USB3 camera is

}  // namespace

Camera::Camera(CameraConfig config, std::string tlType)
    : config_(std::move(config)),
      tlType_(std::move(tlType)),
      registers_(
          std::make_shared<RegisterSpace>(std::numeric_limits<uint64_t>::max(),
                                          config_.bigEndian ? ByteOrder::Big : ByteOrder::Little)),
      control_(PowerOnSettings(config_)),
      events_(tlType_),
      userName_(config_.userName),
      features_(*this) {
    events_.Follow(control_);
}

void Camera::CheckPlugged() const {
    if (!IsPlugged()) throw Error(GenTL::GC_ERR_IO, config_.id + " is unplugged");
}

bool Camera::IsOpen(GenTL::DEVICE_ACCESS_FLAGS access) const {
    return std::any_of(opened_.begin(), opened_.end(),
                       [&](const auto& entry) { return entry.second.access == access; });
}

Claim Camera::Open(GenTL::DEVICE_ACCESS_FLAGS access, Handle client) {
    if (access < GenTL::DEVICE_ACCESS_READONLY || access > GenTL::DEVICE_ACCESS_EXCLUSIVE) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "no access to open a device with");
    }
    CheckPlugged();
    const uint64_t number = nextOpened_++;
    const auto take = [&] {
        const std::lock_guard lock(mutex_);
        const bool excluded =
            IsOpen(GenTL::DEVICE_ACCESS_EXCLUSIVE) ||
            (access == GenTL::DEVICE_ACCESS_EXCLUSIVE && !opened_.empty()) ||
            (access == GenTL::DEVICE_ACCESS_CONTROL && IsOpen(GenTL::DEVICE_ACCESS_CONTROL));
        if (excluded) throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, config_.id + " is open already");
        opened_[number] = {access, client};
    };
    return MakeClaim(take, [self = shared_from_this(), number, access] {
        std::unique_lock releaseLock(self->mutex_);
        self->opened_.erase(number);
        releaseLock.unlock();
        if (access != GenTL::DEVICE_ACCESS_READONLY) self->OnReleased();
    });
}

// Nobody controls the camera any more, as when a real one misses the sign of life: it sends nothing
// on its own, and the next client finds no locks.
void Camera::OnReleased() {
    acquisition_.Abort();
    control_.LockByClient(false);
}

void Camera::Unplug() {
    plugged_.store(false);
    acquisition_.Unplug();
}

GenTL::DEVICE_ACCESS_STATUS Camera::AccessStatus(Handle client) const {
    if (!IsPlugged()) return GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
    const std::lock_guard lock(mutex_);
    bool reads = false;
    for (const auto& [number, opened] : opened_) {
        if (opened.client != client) continue;
        if (opened.access != GenTL::DEVICE_ACCESS_READONLY) {
            return GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE;
        }
        reads = true;
    }
    if (reads) return GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY;
    if (IsOpen(GenTL::DEVICE_ACCESS_EXCLUSIVE)) return GenTL::DEVICE_ACCESS_STATUS_BUSY;
    if (IsOpen(GenTL::DEVICE_ACCESS_CONTROL)) return GenTL::DEVICE_ACCESS_STATUS_READONLY;
    return GenTL::DEVICE_ACCESS_STATUS_READWRITE;
}

std::string Camera::UserName() const {
    const std::lock_guard lock(mutex_);
    return userName_;
}

void Camera::SetUserName(const std::string& name) {
    const std::lock_guard lock(mutex_);
    userName_ = name;
}

IpSettings Camera::Ip() const {
    const std::lock_guard lock(mutex_);
    return ip_;
}

void Camera::ForceIp(const IpSettings& ip) {
    CheckPlugged();
    const std::lock_guard lock(mutex_);
    if (!opened_.empty()) throw Error(GenTL::GC_ERR_ACCESS_DENIED, config_.id + " is open");
    ip_ = ip.address == 0 ? config_.ip : ip;
}

std::string Camera::DisplayName() const {
    std::string userName = UserName();
    if (!userName.empty()) return userName;
    return config_.vendor + " " + config_.model + " (" + config_.serial + ")";
}

void Camera::GetInfo(Answer answer, Handle client) const {
    switch (answer.Command()) {
        case GenTL::DEVICE_INFO_ID:
            return answer.String(config_.id);
        case GenTL::DEVICE_INFO_VENDOR:
            return answer.String(config_.vendor);
        case GenTL::DEVICE_INFO_MODEL:
            return answer.String(config_.model);
        case GenTL::DEVICE_INFO_TLTYPE:
            return answer.String(tlType_);
        case GenTL::DEVICE_INFO_DISPLAYNAME:
            return answer.String(DisplayName());
        case GenTL::DEVICE_INFO_ACCESS_STATUS:
            return answer.Int32(AccessStatus(client));
        case GenTL::DEVICE_INFO_USER_DEFINED_NAME:
            return answer.String(UserName());
        case GenTL::DEVICE_INFO_SERIAL_NUMBER:
            return answer.String(config_.serial);
        case GenTL::DEVICE_INFO_VERSION:
            return answer.String(config_.version);
        case GenTL::DEVICE_INFO_TIMESTAMP_FREQUENCY:
            return answer.Uint64(config_.timestampFrequency);
        case kInfoUsbHost:
            if (tlType_ == TLTypeU3VName) return answer.String(config_.usbHostInfo);
            break;
        default:
            break;
    }
    throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown device info command");
}

uint64_t Camera::NanosecondsAt(Frame::Clock::time_point time) const {
    const auto since = time - powerOn_;
    return static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(since).count());
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
