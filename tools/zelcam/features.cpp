// zelcam features: what a camera can do, and how it is set.

#include <iostream>
#include <memory>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "tools/zelcam/commands.h"
#include "tools/zelcam/featurelisting.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/suggestion.h"
#include "tools/zelcam/texttable.h"

namespace {

using Json = nlohmann::ordered_json;

struct FeaturesOptions {
    FeatureOptions camera;
    std::string glob;
    std::string visibility = "guru";
    bool missing = false;
    bool descriptions = false;
    bool names = false;
};

// For the completion of the shell. No value is read.
ExitCode PrintNames(ZelGenParam::Array& features) {
    const FeatureFilter everything = {"", ZelGenParam::Visibility::Invisible, true};
    VisitFeatures(features, everything, [](ZelGenParam::Param& feature, const auto&) {
        std::cout << feature.GetName() << '\n';
    });
    return ExitCode::Ok;
}

FeatureListing PrintFeatureObjects(ZelGenParam::Array& features, const FeatureFilter& filter,
                                   const std::string& camera) {
    Json result = {{"camera", camera}, {"features", Json::array()}};
    FeatureListing listing = ListFeatures(result["features"], features, filter);
    result["failures"] = listing.failures;
    if (listing.count != 0 || filter.glob.empty() || !listing.failures.empty()) {
        std::cout << JsonText(result) << '\n';
    }
    return listing;
}

std::vector<std::string> WordsOf(const FeaturesOptions& options) {
    std::vector<std::string> words;
    for (const std::string& word : {options.camera.camera, options.glob})
        if (!word.empty()) words.push_back(word);
    return words;
}

[[noreturn]] void FailWithoutFit(const std::string& glob, bool cameraIsGiven,
                                 ZelGenParam::Array& features) {
    throw Failure(ExitCode::FeatureFailed,
                  "no feature fits \"" + glob + "\"" +
                      (cameraIsGiven ? "" : ", and no camera is called that") +
                      DidYouMean(glob, NamesOf(features)));
}

ExitCode RunFeatures(const FeaturesOptions& options) {
    std::vector<std::string> words = WordsOf(options);
    const size_t given = words.size();
    FeatureSession session(options.camera, words, 1);
    const std::string glob = words.empty() ? "" : words.front();
    const FeatureFilter filter = {glob, VisibilityOf(options.visibility), options.missing};
    ZelGenParam::Array& features = session.Features();
    if (options.names) return PrintNames(features);
    const bool json = options.camera.session.json;
    const TableStyle style = {TerminalWidth(STDOUT_FILENO), options.descriptions, nullptr};
    const FeatureListing listing =
        json ? PrintFeatureObjects(features, filter, session.Camera().Info().id)
             : PrintFeatures(std::cout, features, filter, style);
    if (!listing.failures.empty()) {
        if (json) return ExitCode::FeatureFailed;
        std::cout.flush();
        throw Failure(ExitCode::FeatureFailed, listing.Problem());
    }
    if (listing.count == 0 && !glob.empty()) {
        FailWithoutFit(glob, words.size() != given, features);
    }
    return ExitCode::Ok;
}

}  // namespace

void AddFeaturesCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<FeaturesOptions>();
    Command command = app.AddCommand("features", "Show the features of a camera");
    AddFeatureOptions(command, options->camera, false);
    AddFilterOptions(command, options->glob, options->visibility);
    command.AddFlag("--names", options->names, "Only names, for completion").Hide();
    command.AddFlag("--all", options->missing, "Also features that this camera does not have");
    command.AddFlag("-d,--descriptions", options->descriptions, "Also what the features are for");
    command.Footer(
        "Examples:\n"
        "  zelcam features                        everything about the first camera\n"
        "  zelcam features \"Exposure*\" -d        of the first camera, with descriptions\n"
        "  zelcam features 1 AnalogControl        the features of one category\n"
        "  zelcam features 1 --module stream --json\n\n"
        "One argument is CAMERA when a camera is called that, else GLOB. ACCESS is rw, ro, wo, or "
        "na where a feature is not available at the moment; !! is a value that the camera does "
        "not tell, and makes the exit code 8. A feature with [Selector=...] shows one of several "
        "values: the selector chooses which. Lines wrap on terminals only.");
    Connect(command, invocation, options, RunFeatures);
}
