// zelcam features: the features of a camera, with their values.

#include <iostream>
#include <unistd.h>

#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/suggestion.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/features/featurelisting.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

struct FeaturesOptions : CameraOptions {
    std::string glob;
    std::string visibility = "guru";
    bool missing = false;
    bool descriptions = false;
    bool names = false;
};

// Prints names for completion in the shell, without reading any value.
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
        PrintJson(result);
    }
    return listing;
}

std::vector<std::string> WordsOf(const FeaturesOptions& options) {
    std::vector<std::string> words;
    for (const std::string& word : {options.camera, options.glob})
        if (!word.empty()) words.push_back(word);
    return words;
}

[[noreturn]] void FailWithoutMatch(const std::string& glob, bool cameraIsGiven,
                                   ZelGenParam::Array& features) {
    throw Failure(ExitCode::FeatureFailed,
                  "no feature matches \"" + glob + "\"" +
                      (cameraIsGiven ? "" : ", and no camera has that name") +
                      DidYouMean(glob, NamesOf(features)));
}

ExitCode RunFeatures(const FeaturesOptions& options) {
    std::vector<std::string> words = WordsOf(options);
    const size_t given = words.size();
    FeatureSession session(options, words, 1, HasMatch);
    const std::string glob = words.empty() ? "" : words.front();
    const FeatureFilter filter = {glob, VisibilityOf(options.visibility), options.missing};
    ZelGenParam::Array& features = session.Features();
    if (options.names) return PrintNames(features);
    const bool json = options.json;
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
        FailWithoutMatch(glob, words.size() != given, features);
    }
    return ExitCode::Ok;
}

}  // namespace

void AddFeaturesCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "features", "Show the features of a camera", RunFeatures);
    AddModuleOptions(command, options, false);
    AddFilterOptions(command, options.glob, options.visibility);
    command.AddFlag("--names", options.names, "Print only names, for completion").Hide();
    command.AddFlag("--all", options.missing, "Also show features that this camera does not have");
    command.AddFlag("-d,--descriptions", options.descriptions, "Show what the features are for");
    command.Footer(
        "Examples:\n"
        "  zelcam features                        everything about the first camera\n"
        "  zelcam features \"Exposure*\" -d         of the first camera, with descriptions\n"
        "  zelcam features 1 AnalogControl        the features of one category\n"
        "  zelcam features 1 --module stream --json\n\n"
        "A single argument is CAMERA if a camera has that name, else GLOB. ACCESS is rw, ro, wo, "
        "or na for a feature that is not available at the moment. !! marks a value that could not "
        "be read; the exit code is then 8. A feature with [Selector=...] has several values and "
        "shows the one that the selector chooses. Lines wrap only on terminals.");
}

}  // namespace ZelTool
