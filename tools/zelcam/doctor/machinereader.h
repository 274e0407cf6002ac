// Reads what the machine tells of its processors, limits and network code.
#pragma once

#include <string>

#include "tools/zelcam/doctor/snapshot.h"

namespace ZelTool {

// All but the producers and the counts.
MachineFacts ReadMachine();

// Since the machine was started.
KernelCounts ReadKernelCounts();

// The counts that the kernel's files hold: /proc/net/softnet_stat and /proc/net/netstat.
KernelCounts KernelCountsIn(const std::string& softnet, const std::string& netstat);

}  // namespace ZelTool
