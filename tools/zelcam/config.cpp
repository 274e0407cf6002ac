// zelcam config: the settings of a camera as a file.

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include <nlohmann/json.hpp>

#include "tools/zelcam/commands.h"
#include "tools/zelcam/configfile.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/textfile.h"
#include "tools/zelcam/words.h"

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

struct ConfigOptions {
    FeatureOptions camera;
    std::string file;
};

void PrintDifferences(const std::vector<Difference>& differences, bool json) {
    Json list = Json::array();
    for (const Difference& difference : differences) {
        if (!json) {
            std::cout << difference.feature << ": camera " << difference.camera << ", file "
                      << difference.file << '\n';
        }
        list.push_back({{"feature", difference.feature},
                        {"camera", difference.camera},
                        {"file", difference.file}});
    }
    if (!json) return;
    const Json result = {{"differences", std::move(list)}};
    std::cout << JsonText(result) << '\n';
}

// An earlier file stays as it is when the saving fails.
ExitCode RunSave(const ConfigOptions& options) {
    FeatureSession session(options.camera);
    const TemporaryFile temporary(options.file);
    SaveConfiguration(session.Camera().Device(), temporary.Name());
    fs::permissions(temporary.Name(), fs::perms::group_read | fs::perms::others_read,
                    fs::perm_options::add);
    if (std::rename(temporary.Name().c_str(), options.file.c_str()) != 0) {
        throw Failure(ExitCode::FileFailed,
                      "the file " + options.file + " cannot be written: " + std::strerror(errno));
    }
    return ExitCode::Ok;
}

ExitCode RunLoad(const ConfigOptions& options) {
    FeatureSession session(options.camera);
    const Settings wanted = ReadConfiguration(options.file, session.Features());
    const ZelCamErr code = session.Camera().Device().LoadConfiguration(options.file.c_str());
    if (code == ZelCamErr_LoadConfigFailed) {
        PrintDifferences(Compare(SettingsOf(session.Camera()), wanted),
                         options.camera.session.json);
    }
    if (code != ZelCamErr_Success) {
        throw Failure(ExitCode::FeatureFailed,
                      "the configuration cannot be loaded: " + ErrorWords(code));
    }
    return ExitCode::Ok;
}

ExitCode RunDiff(const ConfigOptions& options) {
    FeatureSession session(options.camera);
    const Settings file = ReadConfiguration(options.file, session.Features());
    const std::vector<Difference> differences = Compare(SettingsOf(session.Camera()), file);
    PrintDifferences(differences, options.camera.session.json);
    return differences.empty() ? ExitCode::Ok : ExitCode::Different;
}

void AddAction(Command parent, Invocation& invocation, const char* name, const char* what,
               ExitCode (*run)(const ConfigOptions&)) {
    auto options = std::make_shared<ConfigOptions>();
    Command command = parent.AddCommand(name, what);
    AddCameraArgument(command, options->camera.camera, true);
    command.AddOption("file", options->file, "The configuration file").TypeName("FILE").Required();
    AddAccessOption(command, options->camera.access, accessNames);
    AddSessionOptions(command, options->camera.session);
    Connect(command, invocation, options, run);
}

}  // namespace

void AddConfigCommand(Command app, Invocation& invocation) {
    Command command = app.AddCommand("config", "Save, load and compare settings of a camera");
    AddAction(command, invocation, "save", "Save the settings of a camera to a file", RunSave);
    AddAction(command, invocation, "load", "Set a camera as a file says", RunLoad);
    AddAction(command, invocation, "diff", "Tell how a camera is set otherwise than a file says",
              RunDiff);
    command.Footer(
        "Examples:\n"
        "  zelcam config save 1 bright.xml\n"
        "  zelcam config load 4711 bright.xml\n"
        "  zelcam config diff 1 bright.xml      exit code 9 when something differs\n\n"
        "A file of one camera can be loaded into another. What was set before a failure stays.");
}
