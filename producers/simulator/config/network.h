// Addresses of simulated cameras on a network.
#pragma once

#include <cstdint>
#include <string>

namespace ZelSim {

// A 48-bit address of the locally administered range, always the same for an identifier.
uint64_t MacAddressOf(const std::string& id);

}  // namespace ZelSim
