#include "tools/zelcam/commands/commands.h"

namespace ZelTool {

void AddSessionOptions(Command command, SessionOptions& options) {
    command.AddFlag("--json", options.json, "Print the result as JSON");
    command.Heading("Where to look for cameras");
    command
        .AddOption("-p,--producer", "FILE", options.producers,
                   "Also load this GenTL producer (.cti file); may be repeated. The producers in "
                   "the folders of GENICAM_GENTL64_PATH are always loaded")
        .OneValueEach();
    command.AddOption(
        "--only", "FILE", options.only,
        "Use only the cameras of this producer: a file, or the name of a producer that "
        "is loaded anyway");
    CommandOption simulated =
        command.AddFlag("--simulated", options.simulated,
                        "Use only simulated cameras: those in the file that ZELSIM_CONFIG names, "
                        "else built-in ones");
    command.AddFlag("--no-simulated", options.noSimulated, "Leave out simulated cameras")
        .Excludes(simulated);
    command
        .AddOption("--search", "MS", options.searchMs,
                   "Time for each interface to find its cameras, in milliseconds")
        .Range(0, 600000);
    command
        .AddOption("--load-timeout", "MS", options.loadMs,
                   "Longest time for a producer to load and to list its interfaces and cameras, "
                   "not counting the search, in milliseconds")
        .Range(100, 600000);
    command.Heading("Options");
}

void AddCameraArgument(Command command, std::string& camera, bool required) {
    const std::string what =
        "Identifier, serial number or user name of the camera, or its number in `zelcam list`. "
        "PRODUCER/CAMERA if several producers list it";
    command
        .AddOption("camera", "CAMERA", camera,
                   required ? what
                            : what +
                                  ". Default: the first real camera, or the first simulated one "
                                  "if there are only simulated cameras")
        .Required(required);
}

void AddAccessOption(Command command, std::string& access, const std::vector<std::string>& names) {
    std::string words = "control (others may read) or exclusive";
    if (names.front() != "control") words = "readonly, " + words;
    if (names.front() == "auto") words += ";\nauto: control, or readonly if control is taken";
    command.AddOption("-a,--access", "ACCESS", access, words).OneOf(names);
}

void AddModuleOptions(Command command, CameraOptions& options, bool cameraRequired) {
    AddCameraArgument(command, options.camera, cameraRequired);
    command
        .AddOption("-m,--module", "MODULE", options.module,
                   "Which module: camera, local (the host's side of the connection), interface or "
                   "stream")
        .OneOf({"camera", "local", "interface", "stream"});
    AddAccessOption(command, options.access, kAccessNames);
    AddSessionOptions(command, options);
}

void AddFilterOptions(Command command, std::string& glob, std::string& visibility) {
    command.AddOption(
        "glob", "GLOB", glob,
        "Only features whose name, or whose category's name, matches; * and ? work as "
        "in file names");
    command
        .AddOption("-v,--visibility", "LEVEL", visibility,
                   "Show features up to this level: beginner, expert, guru or invisible")
        .OneOf({"beginner", "expert", "guru", "invisible"});
}

void AddTimeoutOption(Command command, uint64_t& timeoutMs) {
    command
        .AddOption("-t,--timeout", "MS", timeoutMs,
                   "Longest wait for the next frame, in milliseconds")
        .Range(1, 86400000);
}

void AddSampleOptions(Command command, uint64_t& count, uint64_t& timeoutMs,
                      const std::string& purpose) {
    command.AddOption("-n,--count", "N", count, "Frames to grab " + purpose).Range(1, 100000);
    AddTimeoutOption(command, timeoutMs);
}

void AddEndOptions(Command command, uint64_t& count, uint64_t& durationMs,
                   const std::string& things) {
    command.AddOption("-n,--count", "N", count,
                      "End after this many " + things + "; 0: until Ctrl-C");
    command
        .AddOption("-d,--duration", "MS", durationMs,
                   "End after this time at the latest, in milliseconds; 0: until Ctrl-C")
        .Range(0, 31536000000);
}

}  // namespace ZelTool
