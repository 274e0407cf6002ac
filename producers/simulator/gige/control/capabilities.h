// What a served camera can, as its capability registers say it.
#pragma once

#include <cstdint>

#include "producers/simulator/config/networkswitches.h"
#include "producers/wire/bootstrap.h"

namespace ZelSim {

// The bits of the registers of the same names; what the switches take away is missing.
struct Capabilities {
    uint32_t gvcp = 0;
    uint32_t gvsp = 0;
    uint32_t messages = 0;
    uint32_t stream = 0;  // SCC
    uint32_t supportedIp = 0;

    bool Has(uint32_t gvcpBit) const { return (gvcp & gvcpBit) != 0; }

    // Whether the device has a register that it could have.
    bool IsPresent(const ZelCti::Gev::Register& reg) const;
};

// `streamCapability` is what the stream channels are able to do.
Capabilities CapabilitiesOf(const NetworkSettings& settings, uint32_t streamCapability);

}  // namespace ZelSim
