// Producers, interfaces and cameras as tables.
#ifndef ZELCAM_TOOLS_ZELCAM_LISTING_H
#define ZELCAM_TOOLS_ZELCAM_LISTING_H

#include <iosfwd>

#include "tools/zelcam/session.h"

void PrintSession(std::ostream& out, const Session& session);

#endif  // ZELCAM_TOOLS_ZELCAM_LISTING_H
