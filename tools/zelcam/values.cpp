// zelcam get, set and exec: single features.

#include <iostream>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/zelcam/commands.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/pause.h"
#include "tools/zelcam/printable.h"
#include "tools/zelcam/words.h"

namespace {

using Json = nlohmann::ordered_json;

std::string ReadOrFail(ZelGenParam::Param& feature) {
    const std::optional<std::string> value = ReadFeature(feature);
    if (value) return *value;
    const std::string why = feature.IsReadable() ? "the camera does not answer, or it has no value"
                                                 : "its access is " + AccessMark(feature);
    throw Failure(ExitCode::FeatureFailed,
                  std::string(feature.GetName()) + " cannot be read: " + why);
}

struct GetOptions {
    FeatureOptions camera;
    std::vector<std::string> names;
    bool plain = false;
};

ExitCode RunGet(const GetOptions& options) {
    FeatureSession session(options.camera);
    Json values = Json::object();
    for (const std::string& name : options.names) {
        ZelGenParam::Param& feature = FindFeature(session.Features(), name);
        const std::string value = ReadOrFail(feature);
        if (options.camera.session.json) {
            values[name] = ReadFeatureAsJson(feature);
        } else {
            std::cout << (options.plain ? value : name + "=" + Printable(value)) << '\n';
        }
    }
    if (options.camera.session.json) std::cout << JsonText(values) << '\n';
    return ExitCode::Ok;
}

struct SetOptions {
    FeatureOptions camera;
    std::vector<std::string> settings;
};

// A value is read back because the camera may have rounded it.
ExitCode RunSet(const SetOptions& options) {
    FeatureSession session(options.camera);
    Json values = Json::array();
    for (const std::string& setting : options.settings) {
        ZelGenParam::Param& feature = SetFeature(session.Features(), setting);
        if (options.camera.session.json) {
            values.push_back({{"name", feature.GetName()}, {"value", ReadFeatureAsJson(feature)}});
        } else {
            const std::string unknown = setting.substr(setting.find('=') + 1);
            std::cout << feature.GetName() << '='
                      << Printable(ReadFeature(feature).value_or(unknown)) << std::endl;
        }
    }
    if (options.camera.session.json) std::cout << JsonText(values) << '\n';
    return ExitCode::Ok;
}

struct ExecOptions {
    FeatureOptions camera;
    std::string command;
    uint64_t timeoutMs = 5000;
};

void AwaitDone(ZelGenParam::Command& command, const std::string& name, uint64_t timeoutMs) {
    const Deadline deadline(timeoutMs);
    for (;;) {
        ZelCamErr code = ZelCamErr_Success;
        if (command.IsDone(&code)) return;
        if (code != ZelCamErr_Success) {
            throw Failure(ExitCode::FeatureFailed,
                          "it cannot be told whether " + name + " is done: " + ErrorWords(code));
        }
        constexpr uint64_t betweenMs = 10;
        if (deadline.Passed()) {
            throw Failure(ExitCode::Timeout, name + " was started and is not done after " +
                                                 std::to_string(timeoutMs) + " ms");
        }
        Pause(betweenMs);
        if (Interrupted()) throw Failure(ExitCode::Interrupted, name + " was started");
    }
}

ExitCode RunExec(const ExecOptions& options) {
    FeatureSession session(options.camera);
    ZelGenParam::Param& feature = FindFeature(session.Features(), options.command);
    ZelGenParam::Command* command = feature.ToCommand();
    if (command == nullptr) {
        throw Failure(ExitCode::FeatureFailed,
                      options.command + " is no command but of kind " + KindWords(feature));
    }
    const ZelCamErr code = command->Execute();
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::FeatureFailed,
                      options.command + " does not start: " + ErrorWords(code));
    }
    AwaitDone(*command, options.command, options.timeoutMs);
    if (options.camera.session.json) {
        std::cout << JsonText({{"command", options.command}, {"done", true}}) << '\n';
    }
    return ExitCode::Ok;
}

}  // namespace

void AddGetCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<GetOptions>();
    Command command = app.AddCommand("get", "Read features");
    AddFeatureOptions(command, options->camera);
    command.AddOption("names", options->names, "Names of the features").TypeName("NAME").Required();
    command.AddFlag("--plain", options->plain, "Print only the values, without NAME=");
    command.Footer(
        "Examples:\n"
        "  zelcam get 1 Width Height\n"
        "  zelcam get 4711 --plain DeviceTemperature");
    Connect(command, invocation, options, RunGet);
}

void AddSetCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<SetOptions>();
    Command command = app.AddCommand("set", "Set features");
    AddFeatureOptions(command, options->camera);
    command.AddOption("settings", options->settings, "What to set, in this order")
        .TypeName("NAME=VALUE")
        .Required();
    command.Footer(
        "Examples:\n"
        "  zelcam set 1 PixelFormat=Mono8 Width=320\n"
        "  zelcam set 4711 GainSelector=DigitalAll Gain=2.5\n\n"
        "A selector comes before what it selects. The first setting that fails ends the command; "
        "those\nbefore it stay. Values are printed as the camera took them.");
    Connect(command, invocation, options, RunSet);
}

void AddExecCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<ExecOptions>();
    Command command = app.AddCommand("exec", "Start a command of a camera, and wait for it");
    AddFeatureOptions(command, options->camera);
    command.AddOption("command", options->command, "Name of the command")
        .TypeName("COMMAND")
        .Required();
    command
        .AddOption("-t,--timeout", options->timeoutMs,
                   "Longest wait until it is done, in milliseconds")
        .TypeName("MS")
        .ShowDefault();
    command.Footer(
        "Examples:\n"
        "  zelcam exec 1 DeviceReset\n"
        "  zelcam exec 1 TriggerSoftware");
    Connect(command, invocation, options, RunExec);
}
