// Reads what a session's producers tell of the cameras, without opening any.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/camera/session.h"
#include "tools/zelcam/doctor/snapshot.h"

namespace ZelTool {

// In the order of the session's cameras.
std::vector<CameraFacts> ReadCameras(const Session& session,
                                     const std::vector<AdapterFacts>& adapters);

// Marks the adapters on which a producer of the session looks for cameras.
void MarkSearched(const Session& session, std::vector<AdapterFacts>& adapters);

// Why no producer of the session looks for cameras; empty if one does.
std::string ProducerProblemOf(const Session& session, const std::string& searchedInterfaces);

}  // namespace ZelTool
