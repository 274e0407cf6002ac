// Collects the producers that a run of the program uses.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/camera/session.h"

namespace ZelTool {

// The default producer, `files` (from options), and every *.cti file in the folders of `pathList`
// (the value of GENICAM_GENTL64_PATH), in this order. A file that appears twice is marked as
// skipped the second time. A folder that cannot be read is listed as failed, so that the user sees
// it. `only`, a path or the name of one of these files, leaves out all others; the default producer
// is loaded anyway.
std::vector<Producer> CollectProducers(const std::vector<std::string>& files,
                                       const std::string& only, const std::string& pathList);

}  // namespace ZelTool
