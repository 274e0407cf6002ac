// Where configurations come from.
#pragma once

#include <string>

#include "producers/simulator/config/config.h"

namespace ZelSim {

// The configuration in a file. Throws GC_ERR_IO when it is not a regular file that can be read, and
// what ParseConfig throws. Never blocks, as opening a FIFO would.
WorldConfig LoadConfigFile(const std::string& path);

// The configuration that the environment asks for: that in the file that ZELSIM_CONFIG names.
// Without it, ZELSIM decides: 1 asks for the built-in configuration. 0, empty or unset means an
// empty one, so that no program opens a simulated camera by accident. Throws
// GC_ERR_INVALID_PARAMETER for any other value of ZELSIM, and what LoadConfigFile throws.
WorldConfig LoadConfig();

}  // namespace ZelSim
