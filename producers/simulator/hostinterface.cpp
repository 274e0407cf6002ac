#include "producers/simulator/hostinterface.h"

#include <algorithm>

#include "producers/server/base/error.h"
#include "producers/server/registers/transporttype.h"

namespace ZelSim {

namespace {

constexpr uint32_t kMask = 0xFFFFFF00;

// The adapter is the first host of the network 192.168.10.0, 192.168.11.0 and so on.
IpSettings AdapterIp(uint32_t number) {
    constexpr uint32_t first = 0xC0A80A01;
    return {first + (number % 200 << 8), kMask, 0};
}

}  // namespace

HostInterface::HostInterface(const InterfaceConfig& config, uint32_t number)
    : config_(config), ip_(AdapterIp(number)) {
    CameraList cameras;
    for (const CameraConfig& camera : config.cameras)
        cameras.push_back(MakeCamera(camera));
    cameras_ = std::make_shared<const CameraList>(std::move(cameras));
}

std::shared_ptr<const HostInterface::CameraList> HostInterface::Cameras() const {
    const std::lock_guard lock(mutex_);
    return cameras_;
}

void HostInterface::Plug(CameraConfig camera) {
    const std::lock_guard lock(mutex_);
    CameraList cameras = *cameras_;
    cameras.push_back(MakeCamera(std::move(camera)));
    cameras_ = std::make_shared<const CameraList>(std::move(cameras));
}

std::shared_ptr<Camera> HostInterface::MakeCamera(CameraConfig camera) {
    CompleteIp(camera.ip);
    if (camera.linkSpeed == 0) camera.linkSpeed = LinkSpeed(config_.type);
    ++numPlugged_;
    return std::make_shared<Camera>(std::move(camera), config_.type);
}

void HostInterface::CompleteIp(IpSettings& camera) {
    constexpr uint32_t firstHost = 100;
    constexpr uint32_t numHosts = 150;
    if (camera.address == 0) {
        camera.address = (ip_.address & kMask) + firstHost + numPlugged_ % numHosts;
    }
    if (camera.mask == 0) camera.mask = kMask;
}

std::shared_ptr<Camera> HostInterface::Unplug(const std::string& cameraId) {
    const std::lock_guard lock(mutex_);
    CameraList cameras = *cameras_;
    const auto found = std::find_if(cameras.begin(), cameras.end(),
                                    [&](const auto& camera) { return camera->Id() == cameraId; });
    if (found == cameras.end()) return nullptr;
    std::shared_ptr<Camera> camera = *found;
    cameras.erase(found);
    cameras_ = std::make_shared<const CameraList>(std::move(cameras));
    camera->Unplug();
    return camera;
}

void HostInterface::GetInfo(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::INTERFACE_INFO_ID:
            return answer.String(config_.id);
        case GenTL::INTERFACE_INFO_DISPLAYNAME:
            return answer.String(config_.displayName);
        case GenTL::INTERFACE_INFO_TLTYPE:
            return answer.String(config_.type);
        case GenTL::INTERFACE_INFO_CUSTOM_ID:  // of this producer: the version of the interface
            return answer.String(config_.version);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown interface info command");
    }
}

}  // namespace ZelSim
