// Producers, interfaces and cameras as tables, and as JSON.
#pragma once

#include <iosfwd>

#include <nlohmann/json_fwd.hpp>

#include "tools/zelcam/camera/session.h"
#include "tools/zelcam/console/texttable.h"

namespace ZelTool {

// Lines wrap at `width`; 0: nowhere. The filter, if there is one, changes the cells of the tables.
void PrintSession(std::ostream& out, const Session& session, size_t width = 0,
                  const TextFilter& filter = nullptr);

// The origin of a camera, as in all JSON about cameras: "interface", "producer" and "simulated".
nlohmann::ordered_json OriginAsJson(const Camera& camera);

// What `zelcam list --json` prints.
nlohmann::ordered_json SessionAsJson(const Session& session);

}  // namespace ZelTool
