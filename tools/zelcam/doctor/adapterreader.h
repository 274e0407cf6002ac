// Reads the network adapters of this machine, as this process sees them.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/doctor/snapshot.h"

namespace ZelTool {

// All adapters, in the order of the kernel. What cannot be read stays as it is by default.
std::vector<AdapterFacts> ReadAdapters();

// The drops of an adapter since it exists; zeros if there is none of that name.
AdapterDrops ReadDrops(const std::string& adapter);

// The adapter through which this machine sends to an address; empty if there is no way. Sends
// nothing.
std::string AdapterTowards(uint32_t address, const std::vector<AdapterFacts>& adapters);

}  // namespace ZelTool
