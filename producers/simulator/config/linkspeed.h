// How fast links are when a configuration does not say it.
#pragma once

#include <cstdint>
#include <string_view>

namespace ZelSim {

// Bytes a second that the links of a transport type carry.
uint64_t UsualLinkSpeed(std::string_view tlType);

}  // namespace ZelSim
