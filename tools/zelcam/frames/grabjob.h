// Grabs from one of the cameras of a command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/console/progress.h"
#include "tools/zelcam/frames/framefiles.h"
#include "tools/zelcam/frames/framename.h"
#include "tools/zelcam/frames/grabloop.h"
#include "tools/zelcam/frames/softwaretrigger.h"

namespace ZelTool {

// Settings that all cameras share.
struct GrabSettings {
    GrabLimits limits;
    uint64_t buffers = 8;
    std::string access = "control";
    std::vector<std::string> features;        // NAME=VALUE, set first and in this order
    std::optional<double> triggersPerSecond;  // see SoftwareTrigger; nothing: send no triggers
};

// Where frames go. All cameras share these.
struct GrabTargets {
    GrabProgress progress;
    std::optional<FrameLog> log;
    std::optional<FrameFiles> files;  // without it, frames are only counted
};

// Opens a camera and sets its features in the constructor, grabs in Run, and closes the camera at
// the end. The report is complete when the files are finished.
class GrabJob {
  public:
    // Throws Failure when the camera cannot be opened, a feature cannot be set, or the camera does
    // not wait for the triggers.
    GrabJob(const Camera& camera, const GrabSettings& settings, FrameNamer namer);
    GrabJob(const GrabJob&) = delete;
    GrabJob& operator=(const GrabJob&) = delete;

    // Does not throw: failures are in the report. Several cameras run in one thread each.
    void Run(GrabTargets& targets);

    void Close() { opened_.reset(); }
    GrabReport& Report() { return report_; }

  private:
    bool Take(const Frame& frame, uint64_t number, GrabTargets& targets);

    const GrabSettings& settings_;
    FrameNamer namer_;
    GrabReport report_;
    std::optional<OpenedCamera> opened_;
    std::optional<SoftwareTrigger> trigger_;
};

}  // namespace ZelTool
