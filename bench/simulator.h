// The simulated cameras as a benchmark uses them: configured for it, and reached without the
// library for comparison.
#ifndef BENCH_SIMULATOR_H
#define BENCH_SIMULATOR_H

#include <memory>
#include <stdexcept>
#include <string>

#include "gentl/GenTL.h"
#include "producers/simulator/zelsim.h"

namespace Bench {

// The producer file "libZelCTI.cti" with the functions that a frame loop needs. It is the same file
// that the library loads by its name, so both see the same cameras.
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

#define BENCH_MEMBER(name, parameters) GenTL::P##name name = Find<GenTL::P##name>(#name);
    GENTL_FUNCTIONS(BENCH_MEMBER)
#undef BENCH_MEMBER

  private:
    Simulator() = default;
};

// Throws for any code but success.
inline void Check(GenTL::GC_ERROR code, const char* what) {
    if (code != GenTL::GC_ERR_SUCCESS) {
        throw std::runtime_error(std::string(what) + " failed: " + std::to_string(code));
    }
}

}  // namespace Bench

#endif  // BENCH_SIMULATOR_H
