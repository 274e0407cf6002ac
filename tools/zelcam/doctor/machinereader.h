// Reads what the machine tells of its processors, limits and network code.
#pragma once

#include "tools/zelcam/doctor/snapshot.h"

namespace ZelTool {

// All but the producers and the counts.
MachineFacts ReadMachine();

// Since the machine was started.
KernelCounts ReadKernelCounts();

}  // namespace ZelTool
