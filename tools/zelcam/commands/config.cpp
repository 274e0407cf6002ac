// zelcam config: saves, loads and compares the settings of a camera.

#include <iostream>

#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/features/configfile.h"
#include "tools/zelcam/features/configload.h"
#include "tools/zelcam/features/configsave.h"

namespace ZelTool {

namespace {

struct ConfigOptions : CameraOptions {
    std::string file;
    bool all = false;
    bool userName = false;
};

void PrintDifferences(const std::vector<Difference>& differences, bool json) {
    Json list = Json::array();
    for (const Difference& difference : differences) {
        if (!json) {
            std::cout << Printable(difference.feature + ": camera " + difference.camera +
                                   ", file " + difference.file)
                      << '\n';
        }
        list.push_back({{"feature", difference.feature},
                        {"camera", difference.camera},
                        {"file", difference.file}});
    }
    if (!json) return;
    PrintJson({{"differences", std::move(list)}});
}

std::string FailureLines(const std::vector<LoadFailure>& failures) {
    std::string lines;
    for (const LoadFailure& failure : failures)
        lines += "\n" + Printable(failure.feature + ": " + failure.reason);
    return lines;
}

Json FailureList(const std::vector<LoadFailure>& failures) {
    Json list = Json::array();
    for (const LoadFailure& failure : failures)
        list.push_back({{"feature", failure.feature}, {"reason", failure.reason}});
    return list;
}

ExitCode RunSave(const ConfigOptions& options) {
    FeatureSession session(options);
    OpenedCamera& camera = session.Camera();
    const Saved saved =
        SaveSettings(camera, options.file, options.all ? Settled::All : Settled::Streamable);
    if (options.json && options.file != kStandardStream) {
        PrintJson({{"camera", camera.Info().id},
                   {"file", options.file},
                   {"settings", saved.settings},
                   {"locked", saved.locked}});
    }
    return ExitCode::Ok;
}

ExitCode RunLoad(const ConfigOptions& options) {
    const Configuration configuration = ReadConfiguration(options.file);
    FeatureSession session(options);
    const std::vector<LoadFailure> failures =
        LoadSettings(session.Camera(), configuration, options.userName);
    const ExitCode code = failures.empty() ? ExitCode::Ok : ExitCode::FeatureFailed;
    std::string message;
    if (!failures.empty()) {
        message =
            "not every setting could be loaded (" + std::to_string(failures.size()) + " failed)";
    }
    if (options.json) {
        PrintJson({{"exitCode", static_cast<int>(code)},
                   {"error", message},
                   {"failures", FailureList(failures)}});
    } else if (!failures.empty()) {
        throw Failure(code, message + ":" + FailureLines(failures));
    }
    return code;
}

ExitCode RunDiff(const ConfigOptions& options) {
    const Configuration configuration = ReadConfiguration(options.file);
    FeatureSession session(options);
    const Settings file = SettingsOf(configuration, session.Features());
    const std::vector<Difference> differences = Compare(SettingsOf(session.Camera()), file);
    PrintDifferences(differences, options.json);
    return differences.empty() ? ExitCode::Ok : ExitCode::Different;
}

constexpr const char* kUsedFile = "The configuration file; -: standard input";

AddedCommand<ConfigOptions> AddAction(Command parent, Invocation& invocation, const char* name,
                                      const char* what, const char* file,
                                      ExitCode (*run)(const ConfigOptions&)) {
    AddedCommand<ConfigOptions> added = AddCommand(parent, invocation, name, what, run);
    AddCameraArgument(added.command, added.options.camera, true);
    added.command.AddOption("file", "FILE", added.options.file, file).Required();
    AddAccessOption(added.command, added.options.access, kAccessNames);
    AddSessionOptions(added.command, added.options);
    return added;
}

}  // namespace

void AddConfigCommand(Command app, Invocation& invocation) {
    Command command = app.AddCommand("config", "Save, load and compare settings of a camera");
    // The commands inside this one take over its footer.
    command.Footer(
        "Examples:\n"
        "  zelcam config save 1 bright.xml\n"
        "  zelcam config load 4711 bright.xml\n"
        "  zelcam config diff 1 bright.xml      exit code 9 when something differs\n\n"
        "The file of one camera can be loaded into another. When some settings fail, the others "
        "stay, and the command prints the features that failed.");
    auto [save, saveOptions] =
        AddAction(command, invocation, "save", "Save the settings of a camera to a file",
                  "The configuration file; -: standard output", RunSave);
    save.AddFlag("--all", saveOptions.all,
                 "Save every feature that can be read and written, as plain text");
    auto [load, loadOptions] =
        AddAction(command, invocation, "load", "Load the settings in a file into a camera",
                  kUsedFile, RunLoad);
    load.AddFlag("--user-name", loadOptions.userName,
                 "Also load the user name (DeviceUserID) of another camera");
    AddAction(command, invocation, "diff", "Show where the settings of a camera and a file differ",
              kUsedFile, RunDiff);
}

}  // namespace ZelTool
