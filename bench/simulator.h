// The simulated cameras as a benchmark uses them: configured for it, and reached without the
// library for comparison.
#pragma once

#include <stdexcept>
#include <string>

#include "gentl/GenTL.h"
#include "producers/simulator/zelsim.h"

namespace Bench {

constexpr const char* kInterface = "BENCH";

std::string CameraId(size_t index);

// The producer file "libZelCTI.cti" and its functions. It is the same file that the library
// loads by its name, so both see the same cameras.
class Simulator {
    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(FindSymbol(name));
    }
    void* FindSymbol(const char* name) const;
    static void* Load();

    void* file_ = Load();  // before the functions that are found in it

  public:
    static Simulator& Get();

    // Replaces the cameras by those of a configuration; no module may be open.
    void Configure(const std::string& xml) const;

    // The cameras of one GigE interface, kInterface: `count` times these attributes, beside the
    // identifiers of CameraId.
    void ConfigureCameras(size_t count, const std::string& attributes) const;
    void PlugCamera(const std::string& id) const;

    // An event of the type EVENT_MODULE at the camera, when it is open.
    void FireEvent(const std::string& cameraId) const;

#define BENCH_MEMBER(name, parameters) GenTL::P##name name = Find<GenTL::P##name>(#name);
    GENTL_FUNCTIONS(BENCH_MEMBER)
#undef BENCH_MEMBER

  private:
    Simulator() = default;

    PZelSim_FireEvent fireEvent_ = Find<PZelSim_FireEvent>("ZelSim_FireEvent");
};

// Throws for any code but success.
inline void Check(GenTL::GC_ERROR code, const char* what) {
    if (code != GenTL::GC_ERR_SUCCESS) {
        throw std::runtime_error(std::string(what) + " failed: " + std::to_string(code));
    }
}

}  // namespace Bench
