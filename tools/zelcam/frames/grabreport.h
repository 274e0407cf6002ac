// The result of grabbing from a camera.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "tools/zelcam/camera/session.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/frames/camerachecks.h"
#include "tools/zelcam/frames/framefiles.h"
#include "tools/zelcam/frames/framestatistics.h"

namespace ZelTool {

struct GrabReport {
    Camera camera;
    FrameStatistics statistics;
    uint64_t underruns = 0;
    std::vector<TakenSetting> settings;  // features that were set first
    std::string geometry;                // of the first frame: "640 x 480 Mono8"
    std::optional<uint64_t> triggers;    // sent triggers; nothing without --trigger
    WrittenFiles files;
    bool interrupted = false;
    ExitCode exitCode = ExitCode::Ok;
    std::string error;  // why grabbing ended early; empty if it did not
    std::vector<Check> checks;
    std::vector<std::string> otherCauses;
    std::string nextStep;  // advice about the error; may be empty

    void NoteFrame(const Frame& frame);

    // Notes a failure, if there is one. The first decides the exit code; the report shows all.
    void NoteFailure(const std::optional<Failure>& failure);

    // Prints the summary to `out`, errors and their causes to `err`.
    void PrintText(std::ostream& out, std::ostream& err) const;
    Json AsJson() const;

  private:
    void PrintSummary(std::ostream& out) const;
    void PrintError(std::ostream& err) const;
};

}  // namespace ZelTool
