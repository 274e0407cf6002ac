// The simulated cameras that the environment asks for.
#pragma once

#include "producers/simulator/config/config.h"

namespace ZelSim {

// The configuration in the file that ZELSIM_CONFIG names. Without it, ZELSIM decides: 1 asks for
// the built-in configuration. 0, empty or unset means an empty one, so that no program opens a
// simulated camera by accident. Throws GC_ERR_INVALID_PARAMETER for any other value of ZELSIM,
// GC_ERR_IO when ZELSIM_CONFIG is not a regular file that can be read, and what ParseConfig throws.
// Never blocks, as opening a FIFO would.
WorldConfig LoadConfig();

}  // namespace ZelSim
