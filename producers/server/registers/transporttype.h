// Transport types as numbers.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "producers/server/registers/feature.h"

namespace ZelCti {

// The value of the transport type with this name in enumerations of transport types.
uint32_t TransportTypeNumber(std::string_view name);

// The entries of such an enumeration.
std::vector<Entry> TransportTypeEntries();

}  // namespace ZelCti
