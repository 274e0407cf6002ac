// What came of grabbing.
#ifndef ZELCAM_TOOLS_ZELCAM_GRABREPORT_H
#define ZELCAM_TOOLS_ZELCAM_GRABREPORT_H

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/featuresetting.h"
#include "tools/zelcam/framefiles.h"
#include "tools/zelcam/framestatistics.h"
#include "tools/zelcam/session.h"
#include "tools/zelcam/timeoutreport.h"

struct GrabReport {
    Camera camera;
    FrameStatistics statistics;
    uint64_t underruns = 0;
    std::vector<TakenSetting> settings;  // what was set first
    std::string geometry;                // of the first frame: "640 x 480 Mono8"
    std::optional<uint64_t> triggers;    // sent; nothing where none were asked for
    WrittenFiles files;
    bool interrupted = false;
    ExitCode exitCode = ExitCode::Ok;
    std::string error;  // why it ended early; empty if it did not
    std::vector<Check> checks;
    std::vector<std::string> otherCauses;
    std::string nextStep;  // what to do about the error; empty when that is not known

    void NoteFrame(const Frame& frame);

    // The first failure decides about the exit code; all are told.
    void NoteFailure(const Failure& failure);

    // The summary goes to `out`, errors and their causes to `err`.
    void PrintText(std::ostream& out, std::ostream& err) const;
    nlohmann::ordered_json AsJson() const;

  private:
    void PrintSummary(std::ostream& out) const;
    void PrintError(std::ostream& err) const;
};

#endif  // ZELCAM_TOOLS_ZELCAM_GRABREPORT_H
