#include "producers/simulator/simulatedinterface.h"

#include <algorithm>

#include "producers/simulator/config/linkspeed.h"
#include "producers/simulator/config/network.h"
#include "producers/simulator/zelsim.h"

namespace ZelSim {

using ZelCti::IpSettings;

namespace {

constexpr uint32_t kMask = 0xFFFFFF00;

// The adapter is the first host of the network 192.168.10.0, 192.168.11.0 and so on.
IpSettings AdapterIp(uint32_t number) {
    constexpr uint32_t kFirst = 0xC0A80A01;
    return {kFirst + (number % 200 << 8), kMask, 0};
}

ZelCti::InterfaceInfo InfoOf(const InterfaceConfig& config) {
    ZelCti::InterfaceInfo info;
    info.id = config.id;
    info.displayName = config.displayName;
    info.tlType = config.type;
    info.vendor = ZELSIM_INTERFACE_VENDOR;
    info.model = ZELSIM_INTERFACE_MODEL;
    info.version = config.version;
    return info;
}

}  // namespace

SimulatedInterface::SimulatedInterface(const InterfaceConfig& config, uint32_t number)
    : info_(InfoOf(config)),
      ip_(AdapterIp(number)),
      cameras_(std::make_shared<const CameraList>()) {}

std::shared_ptr<const ZelCti::CameraList> SimulatedInterface::Cameras() const {
    const std::lock_guard lock(mutex_);
    return cameras_;
}

void SimulatedInterface::Plug(CameraConfig camera) {
    const std::lock_guard lock(mutex_);
    camera.network.reset();  // it is reached in this process
    CompleteIp(camera.ip);
    if (camera.linkSpeed == 0) camera.linkSpeed = UsualLinkSpeed(info_.tlType);
    ++numPlugged_;
    PermanentMemory memory(camera);
    CameraList cameras = *cameras_;
    cameras.push_back(MakeCamera(std::move(camera), std::move(memory)));
    cameras_ = std::make_shared<const CameraList>(std::move(cameras));
}

std::shared_ptr<SimulatedCamera> SimulatedInterface::MakeCamera(CameraConfig camera,
                                                                PermanentMemory memory) {
    SimulatedCamera::Surroundings surroundings;
    surroundings.powerCycle = [self = weak_from_this()](SimulatedCamera& old) {
        if (const auto interface = self.lock()) interface->Replace(old);
        old.Hardware().Unplug();
    };
    return std::make_shared<SimulatedCamera>(std::move(camera), info_.tlType,
                                             std::move(surroundings), std::move(memory));
}

// A camera that has its power again is another one, with what this one remembers.
void SimulatedInterface::Replace(SimulatedCamera& camera) {
    PermanentMemory memory = camera.Memory();  // its registers are locked already
    const std::lock_guard lock(mutex_);
    CameraList cameras = *cameras_;
    for (auto& place : cameras) {
        if (place.get() != &camera) continue;
        place = MakeCamera(camera.Hardware().Config(), std::move(memory));
        break;
    }
    cameras_ = std::make_shared<const CameraList>(std::move(cameras));
}

void SimulatedInterface::CompleteIp(IpSettings& camera) {
    constexpr uint32_t kFirstHost = 100;
    constexpr uint32_t kNumHosts = 150;
    if (camera.address == 0) {
        camera.address = (ip_.address & kMask) + kFirstHost + numPlugged_ % kNumHosts;
    }
    if (camera.mask == 0) camera.mask = kMask;
}

bool SimulatedInterface::Unplug(const std::string& cameraId) {
    std::unique_lock lock(mutex_);
    CameraList cameras = *cameras_;
    const auto found = std::find_if(cameras.begin(), cameras.end(),
                                    [&](const auto& camera) { return camera->Id() == cameraId; });
    if (found == cameras.end()) return false;
    const auto camera = std::static_pointer_cast<SimulatedCamera>(*found);
    cameras.erase(found);
    cameras_ = std::make_shared<const CameraList>(std::move(cameras));
    lock.unlock();
    camera->Hardware().Unplug();
    return true;
}

void SimulatedInterface::AddFeatures(ZelCti::FeatureTable& features, const SelectedCamera& camera) {
    if (info_.tlType != TLTypeGEVName) return;
    AddGigeInterfaceFeatures(features, *this, camera);
}

uint64_t SimulatedInterface::MacAddress() const {
    return MacAddressOf(info_.id);
}

bool SimulatedInterface::IsTaken(uint32_t address) const {
    const auto cameras = Cameras();
    return std::any_of(cameras->begin(), cameras->end(), [&](const auto& camera) {
        return camera->Network().value_or(ZelCti::CameraNetwork{}).address == address;
    });
}

void SimulatedInterface::ForceNetwork(ZelCti::Camera& camera, const ZelCti::CameraNetwork& network,
                                      std::chrono::milliseconds /*timeout*/) {
    static_cast<SimulatedCamera&>(camera).Hardware().ForceIp(
        {network.address, network.mask, network.gateway});
}

}  // namespace ZelSim
