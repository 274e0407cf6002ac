#include "producers/simulator/config/network.h"

namespace ZelSim {

uint64_t MacAddressOf(const std::string& id) {
    constexpr uint64_t kLocallyAdministered = uint64_t{0x02} << 40;
    uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char c : id)
        hash = (hash ^ static_cast<uint8_t>(c)) * 0x100000001B3;
    return kLocallyAdministered | (hash & 0xFFFFFFFFFF);
}

}  // namespace ZelSim
