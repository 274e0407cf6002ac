// How this machine reaches an address.
#pragma once

#include <cstdint>

namespace ZelGev {

// The address of this machine from which the system would send there; 0 when it would not. Sends
// nothing.
uint32_t HostAddressTo(uint32_t address);

}  // namespace ZelGev
