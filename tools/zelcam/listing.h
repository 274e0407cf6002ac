// Producers, interfaces and cameras as tables, and as JSON.
#ifndef ZELCAM_TOOLS_ZELCAM_LISTING_H
#define ZELCAM_TOOLS_ZELCAM_LISTING_H

#include <iosfwd>

#include <nlohmann/json_fwd.hpp>

#include "tools/zelcam/session.h"

void PrintSession(std::ostream& out, const Session& session);

// What `zelcam list --json` prints.
nlohmann::ordered_json SessionAsJson(const Session& session);

#endif  // ZELCAM_TOOLS_ZELCAM_LISTING_H
