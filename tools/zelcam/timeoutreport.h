// Why no frame arrives.
#ifndef ZELCAM_TOOLS_ZELCAM_TIMEOUTREPORT_H
#define ZELCAM_TOOLS_ZELCAM_TIMEOUTREPORT_H

#include <string>
#include <vector>

#include "tools/zelcam/acquisition.h"
#include "tools/zelcam/camerachecks.h"
#include "tools/zelcam/framestatistics.h"
#include "tools/zelcam/session.h"

// Looks at everything that the stream and the camera tell, what is most likely first. Call it while
// the acquisition runs. `triggersSent`: see CheckCamera.
std::vector<Check> CheckSilence(Acquisition& acquisition, const Camera& camera,
                                const FrameStatistics& statistics, uint64_t timeoutMs,
                                uint64_t triggersSent);

// What cannot be looked at from here and may keep every frame back, most likely first.
std::vector<std::string> OtherCauses(const Camera& camera);

// The one thing to do next.
std::string NextStep(const std::vector<Check>& checks, const std::vector<std::string>& otherCauses);

#endif  // ZELCAM_TOOLS_ZELCAM_TIMEOUTREPORT_H
