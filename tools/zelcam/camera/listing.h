// Producers, interfaces and cameras as tables, and as JSON.
#pragma once

#include <iosfwd>

#include "tools/zelcam/camera/session.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/texttable.h"

namespace ZelTool {

// Lines wrap at `width`; 0: nowhere. The filter, if there is one, changes the cells of the tables.
void PrintSession(std::ostream& out, const Session& session, size_t width = 0,
                  const TextFilter& filter = nullptr);

// The origin of a camera, as in all JSON about cameras: "interface", "producer" and "simulated".
Json OriginAsJson(const Camera& camera);

// What `zelcam list --json` prints.
Json SessionAsJson(const Session& session);

}  // namespace ZelTool
