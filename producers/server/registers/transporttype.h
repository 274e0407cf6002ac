// Transport types as numbers.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "producers/server/registers/feature.h"

namespace ZelSim {

// The value of the transport type with this name in enumerations of transport types.
uint32_t TransportTypeNumber(std::string_view name);

// The entries of such an enumeration.
std::vector<Entry> TransportTypeEntries();

// Bytes a second that the links of a transport type carry.
uint64_t LinkSpeed(std::string_view name);

}  // namespace ZelSim
