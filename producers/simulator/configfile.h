// The configuration that the environment names.
#ifndef ZELSIM_CONFIGFILE_H
#define ZELSIM_CONFIGFILE_H

#include "producers/simulator/config.h"

namespace ZelSim {

// The configuration in the file that ZELSIM_CONFIG names, or the built-in one when it is not set.
// Throws GC_ERR_IO when that is not a regular file that can be read, and what ParseConfig throws.
// Never blocks, as opening a FIFO would.
WorldConfig LoadConfig();

}  // namespace ZelSim

#endif  // ZELSIM_CONFIGFILE_H
