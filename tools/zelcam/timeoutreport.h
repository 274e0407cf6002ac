// Why no frame arrives.
#ifndef ZELCAM_TOOLS_ZELCAM_TIMEOUTREPORT_H
#define ZELCAM_TOOLS_ZELCAM_TIMEOUTREPORT_H

#include <string>
#include <vector>

#include "tools/zelcam/framestatistics.h"
#include "tools/zelcam/session.h"

// One possible cause of silence that the program can look at.
struct Check {
    bool good;
    std::string finding;
    std::string advice;  // what to do when it is not good
};

// Looks at everything the stream and the camera tell. Call it while the acquisition runs.
std::vector<Check> CheckSilence(ZelCam::Stream& stream, const Camera& camera,
                                const FrameStatistics& statistics);

// Causes that cannot be looked at from here, most likely first.
std::vector<std::string> OtherCauses(const Camera& camera);

#endif  // ZELCAM_TOOLS_ZELCAM_TIMEOUTREPORT_H
