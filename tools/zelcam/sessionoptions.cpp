#include "tools/zelcam/commands.h"

void AddProducerOptions(Command command, SessionOptions& options) {
    command
        .AddOption("-p,--producer", options.producers,
                   "Also load this GenTL producer (.cti file); may be given several times. Those "
                   "in the folders named by GENICAM_GENTL64_PATH are loaded in any case")
        .TypeName("FILE")
        .OneValueEach();
    command
        .AddOption("--only", options.only,
                   "Use the cameras of this producer only: a file, or the name of one that is "
                   "loaded in any case")
        .TypeName("FILE");
    CommandOption simulated =
        command.AddFlag("--simulated", options.simulated,
                        "Use simulated cameras only: those in the file that ZELSIM_CONFIG names, "
                        "else built-in ones");
    command.AddFlag("--no-simulated", options.noSimulated, "Leave simulated cameras out")
        .Excludes(simulated);
    command
        .AddOption("--search", options.searchMs,
                   "Time each interface has to find its cameras, in milliseconds")
        .TypeName("MS")
        .Range(0, 600000)
        .ShowDefault();
    command
        .AddOption("--load-timeout", options.loadMs,
                   "Time each producer has to load and to list what it has, beside that search, "
                   "in milliseconds")
        .TypeName("MS")
        .Range(100, 600000)
        .ShowDefault();
}

void AddSessionOptions(Command command, SessionOptions& options) {
    AddProducerOptions(command, options);
    command.AddFlag("--json", options.json, "Print the result as JSON");
}

void AddCameraArgument(Command command, std::string& camera, bool required) {
    const std::string what =
        "Identifier, serial number or user name of the camera, or its number in `zelcam list`. "
        "Where several producers have it: PRODUCER/CAMERA";
    command
        .AddOption("camera", camera,
                   required ? what
                            : what +
                                  ". Left out: the first real one, or the first where only "
                                  "simulated ones can be had")
        .TypeName("CAMERA")
        .Required(required);
}

void AddAccessOption(Command command, std::string& access, const std::vector<std::string>& names) {
    std::string words = "readonly, control (others may read) or exclusive";
    if (names.front() == "auto") words += ";\nauto: control, or readonly if that is taken";
    command.AddOption("-a,--access", access, words).TypeName("ACCESS").OneOf(names).ShowDefault();
}

void AddFeatureOptions(Command command, FeatureOptions& options, bool cameraRequired) {
    AddCameraArgument(command, options.camera, cameraRequired);
    command
        .AddOption("-m,--module", options.module,
                   "Which module: camera, local (this side of the connection), interface or stream")
        .TypeName("MODULE")
        .OneOf({"camera", "local", "interface", "stream"})
        .ShowDefault();
    AddAccessOption(command, options.access, accessNames);
    AddSessionOptions(command, options.session);
}

void AddFilterOptions(Command command, std::string& glob, std::string& visibility) {
    command
        .AddOption("glob", glob,
                   "Only features whose name, or whose category's name, fits, with * and ? as in "
                   "file names")
        .TypeName("GLOB");
    command
        .AddOption("-v,--visibility", visibility,
                   "Up to which level: beginner, expert, guru or invisible")
        .TypeName("LEVEL")
        .OneOf({"beginner", "expert", "guru", "invisible"})
        .ShowDefault();
}

void AddTimeoutOption(Command command, uint64_t& timeoutMs) {
    command.AddOption("-t,--timeout", timeoutMs, "Longest wait for the next frame, in milliseconds")
        .TypeName("MS")
        .Range(1, 86400000)
        .ShowDefault();
}

void AddSampleOptions(Command command, uint64_t& count, uint64_t& timeoutMs,
                      const std::string& purpose) {
    command.AddOption("-n,--count", count, "Frames to grab for " + purpose)
        .TypeName("N")
        .Range(1, 100000)
        .ShowDefault();
    AddTimeoutOption(command, timeoutMs);
}

void AddEndOptions(Command command, uint64_t& count, uint64_t& durationMs,
                   const std::string& things) {
    command.AddOption("-n,--count", count, "End after so many " + things + "; 0: until Ctrl-C")
        .TypeName("N")
        .ShowDefault();
    command
        .AddOption("-d,--duration", durationMs,
                   "End after this time in milliseconds, at the latest; 0: go on")
        .TypeName("MS")
        .Range(0, 31536000000)
        .ShowDefault();
}
