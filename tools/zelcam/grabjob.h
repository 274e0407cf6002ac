// Grabbing from one of the cameras of a command.
#ifndef ZELCAM_TOOLS_ZELCAM_GRABJOB_H
#define ZELCAM_TOOLS_ZELCAM_GRABJOB_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zelcam/framefiles.h"
#include "tools/zelcam/framename.h"
#include "tools/zelcam/grabloop.h"
#include "tools/zelcam/openedcamera.h"
#include "tools/zelcam/progress.h"
#include "tools/zelcam/softwaretrigger.h"

// What is the same for every camera.
struct GrabSettings {
    GrabLimits limits;
    uint64_t buffers = 8;
    std::string access = "control";
    std::vector<std::string> features;        // NAME=VALUE, set first and in this order
    std::optional<double> triggersPerSecond;  // of SoftwareTrigger; nothing: none are sent
};

// Where frames go; shared by all cameras.
struct GrabTargets {
    FrameFiles* files = nullptr;  // null: frames are only counted
    FrameLog* log = nullptr;      // null: there is none
    GrabProgress* progress = nullptr;
};

// Opens and sets a camera at construction, grabs in Run, and closes at the end. The report is
// complete when the files are finished.
class GrabJob {
  public:
    // Failure when the camera cannot be opened or set, or does not wait for the triggers.
    GrabJob(const Camera& camera, const GrabSettings& settings, FrameNamer namer);
    GrabJob(const GrabJob&) = delete;
    GrabJob& operator=(const GrabJob&) = delete;

    // Throws nothing: what happens is in the report. With several cameras, each in a thread.
    void Run(const GrabTargets& targets);

    void Close() { opened_.reset(); }
    GrabReport& Report() { return report_; }

  private:
    void Grab(const GrabTargets& targets);
    bool Take(const Frame& frame, uint64_t number, const GrabTargets& targets);

    const GrabSettings& settings_;
    FrameNamer namer_;
    GrabReport report_;
    std::optional<OpenedCamera> opened_;
    std::optional<SoftwareTrigger> trigger_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_GRABJOB_H
