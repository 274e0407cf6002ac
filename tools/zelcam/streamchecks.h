// Checks of the stream of a camera. Each tells what it saw, or throws Failure or Skip, and leaves
// the stream without acquisition and buffers. Those that need frames are skipped for a camera that
// cannot be started because it is opened read-only.
#ifndef ZELCAM_TOOLS_ZELCAM_STREAMCHECKS_H
#define ZELCAM_TOOLS_ZELCAM_STREAMCHECKS_H

#include <cstdint>
#include <string>

#include "tools/zelcam/grabloop.h"
#include "tools/zelcam/openedcamera.h"

// Frames arrive, complete, and none is missing.
std::string CheckFrames(OpenedCamera& camera, const GrabLimits& limits);

// Starts and stops in all orders, with frames fetched and without; a frame arrives after each.
std::string CheckStartStop(OpenedCamera& camera, uint64_t timeoutMs);

// An acquisition of a number of frames ends after them.
std::string CheckCountedFrames(OpenedCamera& camera, uint64_t timeoutMs);

// A wait without frames ends when its time is over.
std::string CheckTimeout(ZelCam::Stream& stream);

// A wait ends when another thread cancels it.
std::string CheckCancel(ZelCam::Stream& stream);

// Frames go on while cameras are looked for, and this one is found.
std::string CheckSearch(OpenedCamera& camera, uint64_t timeoutMs);

// A simulated camera is unplugged while it sends frames: the wait ends with an error, and
// everything can be closed. Skipped for other cameras; this one is gone afterwards, for this
// process.
std::string CheckUnplug(OpenedCamera& camera, const std::string& producer);

#endif  // ZELCAM_TOOLS_ZELCAM_STREAMCHECKS_H
