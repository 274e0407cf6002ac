// The control functions of the simulated producer, for programs that use the library alone.
#pragma once

#include <dlfcn.h>
#include <stdexcept>

#include "producers/simulator/zelsim.h"

namespace ZelTest {

// Loads SIMULATOR_FILE, which is the file that the library loads by its name.
class Simulator {
    template <typename Function>
    Function Find(const char* name) const {
        void* const symbol = dlsym(file_, name);
        if (symbol == nullptr) throw std::runtime_error(dlerror());
        return reinterpret_cast<Function>(symbol);
    }

    static void* Load() {
        void* const file = dlopen(SIMULATOR_FILE, RTLD_NOW);
        if (file == nullptr) throw std::runtime_error(dlerror());
        return file;
    }

    void* file_ = Load();  // before the functions that are found in it

  public:
    PZelSim_Configure configure = Find<PZelSim_Configure>("ZelSim_Configure");
    PZelSim_PlugCamera plug = Find<PZelSim_PlugCamera>("ZelSim_PlugCamera");
    PZelSim_UnplugCamera unplug = Find<PZelSim_UnplugCamera>("ZelSim_UnplugCamera");
    PZelSim_ServeCameras serve = Find<PZelSim_ServeCameras>("ZelSim_ServeCameras");
    PZelSim_FireEvent fire = Find<PZelSim_FireEvent>("ZelSim_FireEvent");
    PZelSim_InjectFault injectFault = Find<PZelSim_InjectFault>("ZelSim_InjectFault");
    PZelSim_ClearFaults clearFaults = Find<PZelSim_ClearFaults>("ZelSim_ClearFaults");
    PZelSim_GetCallCount callCount = Find<PZelSim_GetCallCount>("ZelSim_GetCallCount");
    PZelSim_GetNumOpenHandles openHandles =
        Find<PZelSim_GetNumOpenHandles>("ZelSim_GetNumOpenHandles");
};

}  // namespace ZelTest
