// The simulated world of the process.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "producers/simulator/gige/networkserver.h"
#include "producers/simulator/world.h"

namespace ZelCti {

// Made when it is first asked for, of the configuration that the environment names, and kept until
// another one replaces it. On request its cameras are served on a network as well. Thread-safe.
class Simulation {
  public:
    static Simulation& Instance();

    std::shared_ptr<ZelSim::World> GetWorld();  // throws when there is no usable configuration
    void Replace(const ZelSim::WorldConfig& config);

    // Serves the cameras of the present configuration instead of those that were served before.
    void Serve(const std::vector<std::string>& on);
    void StopServing();
    std::shared_ptr<ZelSim::NetworkServer> Served();  // throws GC_ERR_INVALID_ID when there is none

  private:
    Simulation() = default;

    void MakeWorld();

    std::mutex mutex_;  // guards what follows
    ZelSim::WorldConfig config_;
    std::shared_ptr<ZelSim::World> world_;  // of the configuration; null before it is read
    std::shared_ptr<ZelSim::NetworkServer> server_;
};

}  // namespace ZelCti
