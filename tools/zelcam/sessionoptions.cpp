#include "tools/zelcam/commands.h"

void AddProducerOptions(CLI::App& command, SessionOptions& options) {
    command
        .add_option("-p,--producer", options.producers,
                    "Also load this GenTL producer (.cti file); may be\n"
                    "given several times. Those in the folders named by\n"
                    "GENICAM_GENTL64_PATH are loaded in any case")
        ->type_name("FILE")
        ->allow_extra_args(false);
    command
        .add_option("--search", options.searchMs,
                    "Time each interface has to find its cameras, in\n"
                    "milliseconds")
        ->type_name("MS")
        ->check(CLI::Range(uint64_t{0}, uint64_t{600000}).description(""))
        ->capture_default_str();
}

void AddSessionOptions(CLI::App& command, SessionOptions& options) {
    AddProducerOptions(command, options);
    command.add_flag("--json", options.json, "Print the result as JSON");
}

void AddCameraArgument(CLI::App& command, std::string& camera, bool required) {
    const std::string what =
        "Identifier, serial number or user name of the camera, or\n"
        "its number in `zelcam list`";
    command.add_option("camera", camera, required ? what : what + ". Left out: the first one")
        ->type_name("CAMERA")
        ->required(required);
}

void AddAccessOption(CLI::App& command, std::string& access,
                     const std::vector<std::string>& names) {
    std::string words = "readonly, control (others may read) or exclusive";
    if (names.front() == "auto") words += ";\nauto: control, or readonly if that is taken";
    command.add_option("-a,--access", access, words)
        ->type_name("ACCESS")
        ->check(CLI::IsMember(names).description(""))
        ->capture_default_str();
}

void AddFeatureOptions(CLI::App& command, FeatureOptions& options) {
    AddCameraArgument(command, options.camera, true);
    command
        .add_option("-m,--module", options.module,
                    "Whose features: camera, local (this side of the\n"
                    "connection), interface or stream")
        ->type_name("MODULE")
        ->check(CLI::IsMember({"camera", "local", "interface", "stream"}).description(""))
        ->capture_default_str();
    AddAccessOption(command, options.access, accessNames);
    AddSessionOptions(command, options.session);
}

void AddFilterOptions(CLI::App& command, std::string& glob, std::string& visibility) {
    command
        .add_option("glob", glob,
                    "Only features whose name, or whose category's name,\n"
                    "fits, with * and ? as in file names")
        ->type_name("GLOB");
    command
        .add_option("-v,--visibility", visibility,
                    "Up to which level: beginner, expert, guru or invisible")
        ->type_name("LEVEL")
        ->check(CLI::IsMember({"beginner", "expert", "guru", "invisible"}).description(""))
        ->capture_default_str();
}

void AddEndOptions(CLI::App& command, uint64_t& count, uint64_t& durationMs,
                   const std::string& things) {
    command.add_option("-n,--count", count, "End after so many " + things + "; 0: until Ctrl-C")
        ->type_name("N")
        ->capture_default_str();
    command
        .add_option("-d,--duration", durationMs,
                    "End after this time in milliseconds, at the latest; 0:\n"
                    "go on")
        ->type_name("MS")
        ->capture_default_str();
}
