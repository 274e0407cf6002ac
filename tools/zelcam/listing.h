// Producers, interfaces and cameras as tables, and as JSON.
#ifndef ZELCAM_TOOLS_ZELCAM_LISTING_H
#define ZELCAM_TOOLS_ZELCAM_LISTING_H

#include <iosfwd>

#include <nlohmann/json_fwd.hpp>

#include "tools/zelcam/session.h"
#include "tools/zelcam/texttable.h"

// Lines wrap where a `width` is given. What is in the tables goes through the filter, if there is
// one.
void PrintSession(std::ostream& out, const Session& session, size_t width = 0,
                  const TextFilter& filter = nullptr);

// Where a camera comes from: "interface", "producer" and "simulated", in all JSON about cameras.
nlohmann::ordered_json OriginAsJson(const Camera& camera);

// What `zelcam list --json` prints.
nlohmann::ordered_json SessionAsJson(const Session& session);

#endif  // ZELCAM_TOOLS_ZELCAM_LISTING_H
