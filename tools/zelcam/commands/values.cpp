// zelcam get, set and exec: access to single features.

#include <iostream>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/features/featuretree.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

std::string ReadOrFail(ZelGenParam::Param& feature) {
    const std::optional<std::string> value = ReadFeature(feature);
    if (value) return *value;
    const std::string access = AccessMark(feature);
    const bool readable = access == "rw" || access == "ro";
    throw Failure(ExitCode::FeatureFailed,
                  std::string(feature.GetName()) + " cannot be read: " +
                      (readable ? "it has no value" : "its access is " + access));
}

struct GetOptions : CameraOptions {
    std::vector<std::string> names;
    bool plain = false;
};

// When the words name no camera, the first one may be a misspelled camera.
std::vector<ZelGenParam::Param*> FindFeatures(ZelGenParam::Array& features,
                                              const std::vector<std::string>& names,
                                              bool cameraIsGiven) {
    std::vector<ZelGenParam::Param*> found;
    for (const std::string& name : names) {
        try {
            found.push_back(&FindFeature(features, name));
        } catch (const Failure& failure) {
            if (cameraIsGiven || !found.empty()) throw;
            throw Failure(failure.Code(),
                          std::string(failure.what()) +
                              "\nNo camera has that name either; without a camera, the command "
                              "uses the first");
        }
    }
    return found;
}

ExitCode RunGet(const GetOptions& options) {
    std::vector<std::string> names = options.names;
    const std::string& first = options.camera;  // a name where the camera is left out
    if (!first.empty()) names.insert(names.begin(), first);
    const size_t given = names.size();
    FeatureSession session(options, names, given, HasMatch);
    if (names.empty()) {
        throw Failure(ExitCode::Usage, "name the features to read: `zelcam features` lists them");
    }
    Json values = Json::object();
    for (ZelGenParam::Param* feature :
         FindFeatures(session.Features(), names, names.size() != given)) {
        const std::string name = feature->GetName();
        const std::string value = ReadOrFail(*feature);
        if (options.json) {
            values[name] = ReadFeatureAsJson(*feature);
        } else {
            std::cout << (options.plain ? value : name + "=" + Printable(value)) << '\n';
        }
    }
    if (options.json) PrintJson(values);
    return ExitCode::Ok;
}

struct SetOptions : CameraOptions {
    std::vector<std::string> settings;
};

ExitCode RunSet(const SetOptions& options) {
    RequireAssignments(options.settings);
    FeatureSession session(options);
    Json values = Json::array();
    for (const std::string& setting : options.settings) {
        TakenSetting taken = SetAndRead(session.Features(), setting);
        if (options.json) {
            values.push_back(std::move(taken.json));
        } else {
            std::cout << Printable(taken.words) << std::endl;
        }
    }
    if (options.json) PrintJson(values);
    return ExitCode::Ok;
}

struct ExecOptions : CameraOptions {
    std::string command;
    uint64_t timeoutMs = 5000;
};

void AwaitDone(ZelGenParam::Command& command, const std::string& name, uint64_t timeoutMs) {
    const Deadline deadline(timeoutMs);
    for (;;) {
        ZelCamErr code = ZelCamErr_Success;
        if (command.IsDone(&code)) return;
        RequireSuccess(code, "the state of " + name + " cannot be read");
        constexpr uint64_t kBetweenMs = 10;
        if (deadline.Passed()) {
            throw Failure(ExitCode::Timeout, name + " was started and is not done after " +
                                                 std::to_string(timeoutMs) + " ms");
        }
        Pause(kBetweenMs);
        if (Interrupted()) throw Failure(ExitCode::Interrupted, name + " was started");
    }
}

ExitCode RunExec(const ExecOptions& options) {
    FeatureSession session(options);
    ZelGenParam::Param& feature = FindFeature(session.Features(), options.command);
    ZelGenParam::Command* command = feature.ToCommand();
    if (command == nullptr) {
        throw Failure(ExitCode::FeatureFailed,
                      options.command + " is not a command; its kind is " + KindWords(feature));
    }
    RequireSuccess(command->Execute(), options.command + " cannot be started");
    AwaitDone(*command, options.command, options.timeoutMs);
    if (options.json) {
        PrintJson({{"command", options.command}, {"done", true}});
    }
    return ExitCode::Ok;
}

}  // namespace

void AddGetCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(app, invocation, "get", "Read features", RunGet);
    AddModuleOptions(command, options, false);
    command.AddOption("names", "NAME", options.names, "Names of the features");
    command.AddFlag("--plain", options.plain, "Print only the values, without NAME=");
    command.Footer(
        "Examples:\n"
        "  zelcam get Width Height                of the first camera\n"
        "  zelcam get 4711 --plain DeviceTemperature\n\n"
        "The first argument is CAMERA if a camera has that name, else a NAME.");
}

void AddSetCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(app, invocation, "set", "Set features", RunSet);
    AddModuleOptions(command, options);
    command.AddOption("settings", "NAME=VALUE", options.settings, "Features to set, in this order")
        .Required();
    command.Footer(
        "Examples:\n"
        "  zelcam set 1 PixelFormat=Mono8 Width=320\n"
        "  zelcam set 1 ExposureTime=5ms\n"
        "  zelcam set 4711 GainSelector=DigitalAll Gain=2.5\n\n"
        "Put a selector before the features that it selects. The first setting that fails ends "
        "the command; the settings before it stay. The command prints the values that the camera "
        "has accepted.\n\n"
        "A number may have the unit of the feature, or a unit that converts into it: "
        "ExposureTime=5ms, AcquisitionFrameRate=0.5kHz. Units of time are ns, us, ms and s, units "
        "of rates are Hz, kHz, MHz and GHz.");
}

void AddExecCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(
        app, invocation, "exec", "Start a command of a camera and wait for its end", RunExec);
    AddModuleOptions(command, options);
    command.AddOption("command", "COMMAND", options.command, "Name of the command").Required();
    command
        .AddOption("-t,--timeout", "MS", options.timeoutMs,
                   "Longest wait until the command is done, in milliseconds; 0: no limit")
        .Range(0, 86400000);
    command.Footer(
        "Examples:\n"
        "  zelcam exec 1 DeviceReset\n"
        "  zelcam exec 1 TriggerSoftware");
}

}  // namespace ZelTool
