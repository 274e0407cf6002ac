// Transport types as numbers.
#ifndef ZELSIM_TRANSPORTTYPE_H
#define ZELSIM_TRANSPORTTYPE_H

#include <cstdint>
#include <string_view>

namespace ZelSim {

// The value that the descriptions' enumerations of transport types give to the name of one.
uint32_t TransportTypeNumber(std::string_view name);

// Bytes a second that its links carry.
uint64_t LinkSpeed(std::string_view name);

}  // namespace ZelSim

#endif  // ZELSIM_TRANSPORTTYPE_H
