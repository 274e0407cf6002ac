// The subcommands. Each has a source, which adds its options to the command line and notes in
// `run` what to do when the user chose it.
#ifndef ZELCAM_TOOLS_ZELCAM_COMMANDS_H
#define ZELCAM_TOOLS_ZELCAM_COMMANDS_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/zelcam/commandline.h"
#include "tools/zelcam/failure.h"
#include "tools/zelcam/openedcamera.h"

struct Invocation {
    std::function<ExitCode()> run;
    bool json = false;  // failures, too, are told as JSON
};

// Notes in `invocation` what to do when the user chose the command. `session` is in the options.
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

// The options that every command with cameras has; the first has no --json.
void AddProducerOptions(Command command, SessionOptions& options);
void AddSessionOptions(Command command, SessionOptions& options);

// The argument that chooses a camera.
void AddCameraArgument(Command command, std::string& camera, bool required);

// How the camera is opened: one of `names`.
void AddAccessOption(Command command, std::string& access, const std::vector<std::string>& names);

// The argument CAMERA and the options of FeatureOptions.
void AddFeatureOptions(Command command, FeatureOptions& options, bool cameraRequired = true);

// The argument GLOB and the option for the visibility, see FeatureFilter.
void AddFilterOptions(Command command, std::string& glob, std::string& visibility);

// How long a frame is waited for.
void AddTimeoutOption(Command command, uint64_t& timeoutMs);

// Frames that a command grabs for its own ends, `purpose`, and how long it waits for each.
void AddSampleOptions(Command command, uint64_t& count, uint64_t& timeoutMs,
                      const std::string& purpose);

// When a command ends that goes on by itself: after a count of `things`, or a time; 0 for both:
// with Ctrl-C.
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

#endif  // ZELCAM_TOOLS_ZELCAM_COMMANDS_H
