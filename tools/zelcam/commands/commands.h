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

using CommandAdder = void(Command app, Invocation& invocation);
CommandAdder AddListCommand, AddGrabCommand, AddFeaturesCommand, AddGetCommand, AddSetCommand,
    AddExecCommand, AddWatchCommand, AddEventsCommand, AddConfigCommand, AddXmlCommand,
    AddIpCommand, AddReadCommand, AddWriteCommand, AddFirmwareCommand, AddReportCommand,
    AddCheckCommand, AddDoctorCommand;

template <typename Options>
struct AddedCommand {
    Command command;
    Options& options;
};

// Adds a command that calls `run`. Its options, of a class derived from SessionOptions, live as
// long as the command line.
template <typename Options>
AddedCommand<Options> AddCommand(Command parent, Invocation& invocation, const char* name,
                                 const char* what, ExitCode (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    Command command = parent.AddCommand(name, what);
    command.OnChoice([options, run, &invocation] {
        invocation.json = options->json;
        invocation.run = [options, run] { return run(*options); };
    });
    return {command, *options};
}

// The options of all commands.
void AddSessionOptions(Command command, SessionOptions& options);

// The argument that chooses a camera.
void AddCameraArgument(Command command, std::string& camera, bool required);

// The access mode for opening the camera: one of `names`.
void AddAccessOption(Command command, std::string& access, const std::vector<std::string>& names);

// The argument CAMERA and the options of CameraOptions.
void AddModuleOptions(Command command, CameraOptions& options, bool cameraRequired = true);

// The argument GLOB and the option for the visibility, see FeatureFilter.
void AddFilterOptions(Command command, std::string& glob, std::string& visibility);

// The longest wait for a frame.
void AddTimeoutOption(Command command, uint64_t& timeoutMs);

// The number of frames to grab, with a purpose such as "for the statistics", and the longest wait
// for each.
void AddSampleOptions(Command command, uint64_t& count, uint64_t& timeoutMs,
                      const std::string& purpose);

// When a command ends that otherwise runs until Ctrl-C: after a number of `things`, or a time; 0:
// never.
void AddEndOptions(Command command, uint64_t& count, uint64_t& durationMs,
                   const std::string& things);

}  // namespace ZelTool
