// Which producers a run of the program uses.
#ifndef ZELCAM_TOOLS_ZELCAM_PRODUCERLIST_H
#define ZELCAM_TOOLS_ZELCAM_PRODUCERLIST_H

#include <string>
#include <vector>

#include "tools/zelcam/session.h"

// The default producer, the files given as options, and every *.cti file in the folders of
// `pathList` (the value of GENICAM_GENTL64_PATH), in this order. A file that is named twice, or is
// the default producer, is marked as skipped the second time; a folder that cannot be read is
// listed as failed, so that the user sees it. With `only`, the path of a file or the name of one of
// these, all others are left out; the default producer is loaded nevertheless.
std::vector<Producer> CollectProducers(const std::vector<std::string>& files,
                                       const std::string& only, const std::string& pathList);

#endif  // ZELCAM_TOOLS_ZELCAM_PRODUCERLIST_H
