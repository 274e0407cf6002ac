// zelcam features: what a camera can do, and how it is set.

#include <iostream>
#include <memory>

#include "tools/zelcam/commands.h"
#include "tools/zelcam/featurelisting.h"

namespace {

struct FeaturesOptions {
    FeatureOptions camera;
    std::string glob;
    std::string visibility = "guru";
    bool missing = false;
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

ExitCode RunFeatures(const FeaturesOptions& options) {
    FeatureSession session(options.camera);
    const FeatureFilter filter = {options.glob, VisibilityOf(options.visibility), options.missing};
    ZelGenParam::Array& features = session.Features();
    if (options.names) return PrintNames(features);
    const size_t count =
        options.camera.session.json
            ? PrintFeaturesAsJson(std::cout, features, filter, session.Camera().Info().id)
            : PrintFeatures(std::cout, features, filter);
    if (count == 0 && !options.glob.empty()) {
        throw Failure(ExitCode::FeatureFailed, "no feature fits \"" + options.glob + "\"");
    }
    return ExitCode::Ok;
}

}  // namespace

void AddFeaturesCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<FeaturesOptions>();
    Command command = app.AddCommand("features", "Show the features of a camera");
    AddFeatureOptions(command, options->camera);
    AddFilterOptions(command, options->glob, options->visibility);
    command.AddFlag("--names", options->names, "Only names, for completion").Hide();
    command.AddFlag("--all", options->missing, "Also features that this camera does not have");
    command.Footer(
        "Examples:\n"
        "  zelcam features 1                      everything about the first camera\n"
        "  zelcam features 1 \"Exposure*\"\n"
        "  zelcam features 1 AnalogControl        the features of one category\n"
        "  zelcam features 1 --module stream --json\n\n"
        "ACCESS is rw, ro, wo, or na where a feature is not available at the moment. A feature "
        "with\n[Selector=...] shows one of several values: the selector chooses which.");
    Connect(command, invocation, options, RunFeatures);
}
