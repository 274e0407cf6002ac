// The simulated world of the process.
#pragma once

#include <memory>
#include <mutex>

#include "producers/simulator/world.h"

namespace ZelCti {

// Made when it is first asked for, of the configuration that the environment names, and kept until
// another one replaces it. Thread-safe.
class Simulation {
  public:
    static Simulation& Instance();

    std::shared_ptr<ZelSim::World> GetWorld();  // throws when there is no usable configuration
    void Replace(const ZelSim::WorldConfig& config);

  private:
    Simulation() = default;

    std::mutex mutex_;
    std::shared_ptr<ZelSim::World> world_;  // guarded by mutex_
};

}  // namespace ZelCti
