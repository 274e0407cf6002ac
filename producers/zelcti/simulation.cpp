#include "producers/zelcti/simulation.h"

#include "producers/simulator/config/configfile.h"

namespace ZelCti {

Simulation& Simulation::Instance() {
    static Simulation simulation;
    return simulation;
}

std::shared_ptr<ZelSim::World> Simulation::GetWorld() {
    const std::lock_guard lock(mutex_);
    if (world_ == nullptr) world_ = std::make_shared<ZelSim::World>(ZelSim::LoadConfig());
    return world_;
}

void Simulation::Replace(const ZelSim::WorldConfig& config) {
    auto world = std::make_shared<ZelSim::World>(config);
    const std::lock_guard lock(mutex_);
    world_ = std::move(world);
}

}  // namespace ZelCti
