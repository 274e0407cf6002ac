#include "producers/simulator/world.h"

#include "producers/server/base/error.h"
#include "producers/simulator/simulatedinterface.h"

namespace ZelSim {

using ZelCti::Error;

namespace {

SimulatedInterface& Simulated(ZelCti::HostInterface& interface) {
    return static_cast<SimulatedInterface&>(interface);
}

}  // namespace

World::World(const WorldConfig& config) {
    ZelCti::InterfaceList interfaces;
    for (const InterfaceConfig& interface : config.interfaces) {
        const auto number = static_cast<uint32_t>(interfaces.size());
        const auto simulated = std::make_shared<SimulatedInterface>(interface, number);
        for (const CameraConfig& camera : interface.cameras)
            simulated->Plug(camera);
        interfaces.push_back(simulated);
    }
    interfaces_ = std::make_shared<const ZelCti::InterfaceList>(std::move(interfaces));
}

void World::Plug(const std::string& interfaceId, CameraConfig camera) {
    const std::lock_guard lock(plugMutex_);
    ZelCti::HostInterface* target = nullptr;
    for (const auto& interface : *interfaces_) {
        if (interface->Id() == interfaceId) target = interface.get();
        for (const auto& other : *interface->Cameras()) {
            if (other->Id() != camera.id) continue;
            throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, camera.id + " is plugged in already");
        }
    }
    if (target == nullptr) throw Error(GenTL::GC_ERR_INVALID_ID, "no interface " + interfaceId);
    Simulated(*target).Plug(std::move(camera));
}

void World::Unplug(const std::string& cameraId) {
    const std::lock_guard lock(plugMutex_);
    for (const auto& interface : *interfaces_) {
        if (Simulated(*interface).Unplug(cameraId)) return;
    }
    throw Error(GenTL::GC_ERR_INVALID_ID, "no camera " + cameraId);
}

}  // namespace ZelSim
