// The subcommands. Each has a source, which adds its options to the parser and notes in
// `run` what to do when the user chose it.
#ifndef ZELCAM_TOOLS_ZELCAM_COMMANDS_H
#define ZELCAM_TOOLS_ZELCAM_COMMANDS_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/zelcam/failure.h"
#include "tools/zelcam/openedcamera.h"

struct Invocation {
    std::function<ExitCode()> run;
    bool json = false;  // failures, too, are told as JSON
};

// Notes in `invocation` what to do when the user chose the command. `Options` have a member
// `camera` of the type FeatureOptions.
template <typename Options>
void Connect(CLI::App& command, Invocation& invocation, const std::shared_ptr<Options>& options,
             ExitCode (*run)(const Options&)) {
    command.callback([options, run, &invocation] {
        invocation.json = options->camera.session.json;
        invocation.run = [options, run] { return run(*options); };
    });
}

void AddListCommand(CLI::App& app, Invocation& invocation);
void AddGrabCommand(CLI::App& app, Invocation& invocation);

// The options that every command with cameras has; the first has no --json.
void AddProducerOptions(CLI::App& command, SessionOptions& options);
void AddSessionOptions(CLI::App& command, SessionOptions& options);

// The argument that chooses a camera.
void AddCameraArgument(CLI::App& command, std::string& camera, bool required);

// How the camera is opened: one of `names`.
void AddAccessOption(CLI::App& command, std::string& access, const std::vector<std::string>& names);

// The argument CAMERA and the options of FeatureOptions.
void AddFeatureOptions(CLI::App& command, FeatureOptions& options);

// The argument GLOB and the option for the visibility, see FeatureFilter.
void AddFilterOptions(CLI::App& command, std::string& glob, std::string& visibility);

// When a command ends that goes on by itself: after a count of `things`, or a time; 0 for both:
// with Ctrl-C.
void AddEndOptions(CLI::App& command, uint64_t& count, uint64_t& durationMs,
                   const std::string& things);

void AddFeaturesCommand(CLI::App& app, Invocation& invocation);
void AddGetCommand(CLI::App& app, Invocation& invocation);
void AddSetCommand(CLI::App& app, Invocation& invocation);
void AddExecCommand(CLI::App& app, Invocation& invocation);
void AddWatchCommand(CLI::App& app, Invocation& invocation);
void AddEventsCommand(CLI::App& app, Invocation& invocation);
void AddConfigCommand(CLI::App& app, Invocation& invocation);
void AddXmlCommand(CLI::App& app, Invocation& invocation);
void AddIpCommand(CLI::App& app, Invocation& invocation);
void AddReportCommand(CLI::App& app, Invocation& invocation);

#endif  // ZELCAM_TOOLS_ZELCAM_COMMANDS_H
