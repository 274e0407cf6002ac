#include "producers/zelcti/simulation.h"

#include "producers/server/base/error.h"
#include "producers/simulator/config/configfile.h"

namespace ZelCti {

Simulation& Simulation::Instance() {
    static Simulation simulation;
    return simulation;
}

std::shared_ptr<ZelSim::World> Simulation::GetWorld() {
    const std::lock_guard lock(mutex_);
    if (world_ == nullptr) MakeWorld();
    return world_;
}

void Simulation::MakeWorld() {
    config_ = ZelSim::LoadConfig();
    world_ = std::make_shared<ZelSim::World>(config_);
}

void Simulation::Replace(const ZelSim::WorldConfig& config) {
    auto world = std::make_shared<ZelSim::World>(config);
    const std::lock_guard lock(mutex_);
    config_ = config;
    world_ = std::move(world);
}

void Simulation::Serve(const std::vector<std::string>& on) {
    ZelSim::AddressPool pool(on, ZelCti::ListHostAddresses());
    const std::lock_guard lock(mutex_);
    if (world_ == nullptr) MakeWorld();
    server_.reset();
    server_ = std::make_shared<ZelSim::NetworkServer>(config_, std::move(pool),
                                                      [](const std::string& /*line*/) {});
}

void Simulation::StopServing() {
    const std::lock_guard lock(mutex_);
    server_.reset();
}

std::shared_ptr<ZelSim::NetworkServer> Simulation::Served() {
    const std::lock_guard lock(mutex_);
    if (server_ == nullptr) throw Error(GenTL::GC_ERR_INVALID_ID, "no camera is served");
    return server_;
}

}  // namespace ZelCti
