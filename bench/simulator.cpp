#include "bench/simulator.h"

#include <dlfcn.h>

namespace Bench {

Simulator& Simulator::Get() {
    static Simulator simulator;
    return simulator;
}

void* Simulator::Load() {
    void* const file = dlopen("libZelCTI.cti", RTLD_NOW);
    if (file == nullptr) throw std::runtime_error(dlerror());
    return file;
}

void* Simulator::FindSymbol(const char* name) const {
    void* const symbol = dlsym(file_, name);
    if (symbol == nullptr) throw std::runtime_error(dlerror());
    return symbol;
}

void Simulator::Configure(const std::string& xml) const {
    Check(Find<PZelSim_Configure>("ZelSim_Configure")(xml.c_str()), "ZelSim_Configure");
}

}  // namespace Bench
