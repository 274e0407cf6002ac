// Checks of the stream of a camera. Each returns a detail for the report, or throws Failure or
// Skip, and leaves the stream without acquisition and buffers. Checks that need frames are skipped
// for a camera that cannot be started because it is opened read-only.
#pragma once

#include <cstdint>
#include <string>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/frames/grabloop.h"

namespace ZelTool {

// All frames arrive, and they are complete.
std::string CheckFrames(OpenedCamera& camera, const GrabLimits& limits);

// Frames arrive after starts and stops in all orders, with and without fetched frames.
std::string CheckStartStop(OpenedCamera& camera, uint64_t timeoutMs);

// An acquisition of a fixed number of frames ends after that number.
std::string CheckCountedFrames(OpenedCamera& camera, uint64_t timeoutMs);

// A wait without frames ends with a time-out.
std::string CheckTimeout(ZelCam::Stream& stream);

// A wait ends when another thread cancels it.
std::string CheckCancel(ZelCam::Stream& stream);

// Frames go on arriving during a search for cameras, which finds this camera.
std::string CheckSearch(OpenedCamera& camera, uint64_t timeoutMs);

// When a simulated camera is unplugged while it sends frames, the wait ends with an error, and
// everything can be closed. Skipped for other cameras. Afterwards the camera is lost for this
// process.
std::string CheckUnplug(OpenedCamera& camera, const std::string& producer);

}  // namespace ZelTool
