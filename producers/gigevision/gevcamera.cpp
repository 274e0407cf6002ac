#include "producers/gigevision/gevcamera.h"

#include <utility>

#include "producers/gigevision/gevconnection.h"
#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"
#include "producers/wire/bootstrapbits.h"

namespace ZelGev {

using ZelCti::Error;
using ZelCti::IpAddressText;
namespace Ccp = ZelCti::Gev::Ccp;

namespace {

ZelCti::CameraInfo CameraInfoOf(const FoundCamera& found) {
    ZelCti::CameraInfo info;
    info.id = found.id;
    info.vendor = found.manufacturer;
    info.model = found.model;
    info.serialNumber = found.serialNumber;
    info.version = found.version;
    info.tlType = TLTypeGEVName;
    info.bigEndian = found.bigEndian;
    return info;
}

std::string ControllerText(const ZelCti::Endpoint& holder) {
    if (holder.address == 0) return "another application";
    const std::string address = IpAddressText(holder.address);
    return holder.port == 0 ? address : address + ":" + std::to_string(holder.port);
}

}  // namespace

// The use of a camera by one connection.
class GevCamera::Use final : public ZelCti::CameraSink {
  public:
    Use(std::shared_ptr<GevCamera> camera, ZelCti::CameraSink& sink)
        : camera_(std::move(camera)), sink_(sink) {}

  private:
    void OnEvent(GenTL::EVENT_TYPE type, uint64_t id, ZelCti::EventData data) override {
        sink_.OnEvent(type, id, data);
    }

    void OnLost(const std::string& reason) override {
        camera_->OnLost(reason);
        sink_.OnLost(reason);
    }

    const std::shared_ptr<GevCamera> camera_;
    ZelCti::CameraSink& sink_;
};

GevCamera::GevCamera(const ListedCamera& listed) : info_(CameraInfoOf(listed.camera)) {
    Update(listed);
}

bool GevCamera::Is(const FoundCamera& found) const {
    const std::lock_guard lock(mutex_);
    return lossReason_.empty() && found.id == info_.id && found.manufacturer == info_.vendor &&
           found.model == info_.model && found.serialNumber == info_.serialNumber &&
           found.version == info_.version && found.bigEndian == info_.bigEndian;
}

void GevCamera::Update(const ListedCamera& listed) {
    const std::lock_guard lock(mutex_);
    found_ = listed.camera;
    adapter_ = listed.adapter;
    route_ = listed.route;
    if (!listed.reading) return;
    access_ = AccessFrom(*listed.reading);
    if (listed.reading->ticksPerSecond != 0) ticksPerSecond_ = listed.reading->ticksPerSecond;
}

// What other programs leave, as the camera's registers say.
GevCamera::Access GevCamera::AccessFrom(const CameraReading& reading) const {
    if (!lastUse_.expired()) return {};
    if (!reading.isAnswered) {
        return {GenTL::DEVICE_ACCESS_STATUS_NOACCESS,
                "does not answer at " + IpAddressText(found_.ip.address) +
                    ", which another device may have as well"};
    }
    const std::string reason = "controlled by " + ControllerText(reading.holder);
    if (reading.isDenied || (reading.ccp & Ccp::kExclusive) != 0) {
        return {GenTL::DEVICE_ACCESS_STATUS_BUSY, reason};
    }
    if ((reading.ccp & Ccp::kControl) != 0) return {GenTL::DEVICE_ACCESS_STATUS_READONLY, reason};
    return {};
}

GevCamera::Access GevCamera::AccessNow() const {
    const std::lock_guard lock(mutex_);
    if (!lossReason_.empty()) return {GenTL::DEVICE_ACCESS_STATUS_NOACCESS, lossReason_};
    if (!route_) return {GenTL::DEVICE_ACCESS_STATUS_NOACCESS, WhyUnreachable()};
    return access_;
}

std::string GevCamera::WhyUnreachable() const {
    if (found_.ip.address == 0) return "has no address";
    return IpAddressText(found_.ip.address) + " is in no network of " + adapter_;
}

GenTL::DEVICE_ACCESS_STATUS GevCamera::AccessStatus() const {
    return AccessNow().status;
}

std::string GevCamera::AccessReason() const {
    return AccessNow().reason;
}

std::string GevCamera::UserName() const {
    const std::lock_guard lock(mutex_);
    return found_.userName;
}

uint64_t GevCamera::TimestampFrequency() const {
    const std::lock_guard lock(mutex_);
    return ticksPerSecond_;
}

std::optional<ZelCti::CameraNetwork> GevCamera::Network() const {
    const std::lock_guard lock(mutex_);
    return ZelCti::CameraNetwork{found_.mac, found_.ip.address, found_.ip.mask, found_.ip.gateway};
}

void GevCamera::OnLost(const std::string& reason) {
    const std::lock_guard lock(mutex_);
    lossReason_ = reason;
}

std::unique_ptr<ZelCti::Connection> GevCamera::Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                                    ZelCti::CameraSink& sink) {
    std::unique_lock lock(mutex_);
    if (!lossReason_.empty()) throw Error(GenTL::GC_ERR_IO, info_.id + " " + lossReason_);
    if (!route_) throw Error(GenTL::GC_ERR_ACCESS_DENIED, info_.id + ": " + WhyUnreachable());
    const Route route = *route_;
    lock.unlock();
    const auto use = std::make_shared<Use>(shared_from_this(), sink);
    auto connection = OpenGevConnection({route, shared_from_this()}, access, *use, use);
    lock.lock();
    if (access != GenTL::DEVICE_ACCESS_READONLY) {
        lastUse_ = use;
        access_ = {};
    }
    return connection;
}

}  // namespace ZelGev
