#include "bench/simulator.h"

#include <dlfcn.h>

namespace Bench {

std::string CameraId(size_t index) {
    return "BENCH-CAM-" + std::to_string(index);
}

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

void Simulator::ConfigureCameras(size_t count, const std::string& attributes) const {
    std::string xml = "<ZelSim><Interface id='";
    xml += kInterface;
    xml += "' type='GEV'>";
    for (size_t i = 0; i < count; ++i)
        xml += "<Camera id='" + CameraId(i) + "' " + attributes + "/>";
    Configure(xml + "</Interface></ZelSim>");
}

void Simulator::PlugCamera(const std::string& id) const {
    const std::string xml = "<Camera id='" + id + "'/>";
    Check(Find<PZelSim_PlugCamera>("ZelSim_PlugCamera")(kInterface, xml.c_str()),
          "ZelSim_PlugCamera");
}

void Simulator::FireEvent(const std::string& cameraId) const {
    constexpr uint64_t kData = 1;
    Check(fireEvent_(cameraId.c_str(), GenTL::EVENT_MODULE, 1, &kData, sizeof kData),
          "ZelSim_FireEvent");
}

}  // namespace Bench
