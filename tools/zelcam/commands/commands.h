// The subcommands. The source of each adds its options to the command line, and sets `run` when the
// user has chosen it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/console/commandline.h"
#include "tools/zelcam/console/failure.h"

namespace ZelTool {

struct Invocation {
    std::function<ExitCode()> run;
    bool json = false;  // print a failure as JSON, too
};

// Makes `invocation` call `run` when the user has chosen the command. `session` belongs to
// `options`.
template <typename Options>
void Connect(Command command, Invocation& invocation, const std::shared_ptr<Options>& options,
             const SessionOptions& session, ExitCode (*run)(const Options&)) {
    command.OnChoice([options, &session, run, &invocation] {
        invocation.json = session.json;
        invocation.run = [options, run] { return run(*options); };
    });
}

// The same for options with a member `camera` of the type FeatureOptions.
template <typename Options>
void Connect(Command command, Invocation& invocation, const std::shared_ptr<Options>& options,
             ExitCode (*run)(const Options&)) {
    Connect(command, invocation, options, options->camera.session, run);
}

void AddListCommand(Command app, Invocation& invocation);
void AddGrabCommand(Command app, Invocation& invocation);

// The options of all commands that work on cameras; the first function leaves out --json.
void AddProducerOptions(Command command, SessionOptions& options);
void AddSessionOptions(Command command, SessionOptions& options);

// The argument that chooses a camera.
void AddCameraArgument(Command command, std::string& camera, bool required);

// The access mode for opening the camera: one of `names`.
void AddAccessOption(Command command, std::string& access, const std::vector<std::string>& names);

// The argument CAMERA and the options of FeatureOptions.
void AddFeatureOptions(Command command, FeatureOptions& options, bool cameraRequired = true);

// The argument GLOB and the option for the visibility, see FeatureFilter.
void AddFilterOptions(Command command, std::string& glob, std::string& visibility);

// The longest wait for a frame.
void AddTimeoutOption(Command command, uint64_t& timeoutMs);

// The number of frames that a command grabs for `purpose`, and the longest wait for each.
void AddSampleOptions(Command command, uint64_t& count, uint64_t& timeoutMs,
                      const std::string& purpose);

// When a command ends that otherwise runs until Ctrl-C: after a number of `things`, or a time; 0:
// never.
void AddEndOptions(Command command, uint64_t& count, uint64_t& durationMs,
                   const std::string& things);

void AddFeaturesCommand(Command app, Invocation& invocation);
void AddGetCommand(Command app, Invocation& invocation);
void AddSetCommand(Command app, Invocation& invocation);
void AddExecCommand(Command app, Invocation& invocation);
void AddWatchCommand(Command app, Invocation& invocation);
void AddEventsCommand(Command app, Invocation& invocation);
void AddConfigCommand(Command app, Invocation& invocation);
void AddXmlCommand(Command app, Invocation& invocation);
void AddIpCommand(Command app, Invocation& invocation);
void AddReadCommand(Command app, Invocation& invocation);
void AddWriteCommand(Command app, Invocation& invocation);
void AddFirmwareCommand(Command app, Invocation& invocation);
void AddReportCommand(Command app, Invocation& invocation);
void AddCheckCommand(Command app, Invocation& invocation);

}  // namespace ZelTool
