// zelcam watch: what changes by itself.

#include <ctime>
#include <iomanip>
#include <iostream>
#include <map>

#include <nlohmann/json.hpp>

#include "tools/zelcam/commands.h"
#include "tools/zelcam/featurelisting.h"
#include "tools/zelcam/featuretree.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/pause.h"
#include "tools/zelcam/printable.h"

namespace {

using Json = nlohmann::ordered_json;

struct WatchOptions {
    FeatureOptions camera;
    std::string glob;
    std::string visibility = "guru";
    uint64_t intervalMs = 500;
    uint64_t durationMs = 0;
    uint64_t count = 0;
};

class Watch {
  public:
    Watch(ZelGenParam::Array& features, const FeatureFilter& filter, bool json) : json_(json) {
        VisitFeatures(features, filter, [this](ZelGenParam::Param& feature, const auto&) {
            if (values_.emplace(&feature, "").second) order_.push_back(&feature);
        });
        for (ZelGenParam::Param* feature : order_)
            values_[feature] = Read(*feature);
    }

    size_t Size() const { return order_.size(); }
    uint64_t Changes() const { return changes_; }

    void Look() {
        for (ZelGenParam::Param* feature : order_) {
            std::string now = Read(*feature);
            std::string& before = values_[feature];
            if (now == before) continue;
            Tell(feature->GetName(), before, now);
            before = std::move(now);
            ++changes_;
        }
    }

  private:
    static std::string Read(ZelGenParam::Param& feature) {
        return ReadFeature(feature, true).value_or("(" + AccessMark(feature) + ")");
    }

    void Tell(const std::string& name, const std::string& before, const std::string& now) const {
        const std::string time = ClockText();
        if (json_) {
            const Json line = {{"time", time}, {"name", name}, {"before", before}, {"now", now}};
            std::cout << JsonText(line, -1) << std::endl;
        } else {
            std::cout << time << "  " << name << "  " << Printable(before) << " -> "
                      << Printable(now) << std::endl;
        }
    }

    bool json_;
    uint64_t changes_ = 0;
    std::vector<ZelGenParam::Param*> order_;
    std::map<ZelGenParam::Param*, std::string> values_;
};

ExitCode RunWatch(const WatchOptions& options) {
    FeatureSession session(options.camera);
    Watch watch(session.Features(), {options.glob, VisibilityOf(options.visibility), false},
                options.camera.session.json);
    if (watch.Size() == 0) {
        throw Failure(ExitCode::FeatureFailed, "no feature fits \"" + options.glob + "\"");
    }
    std::cerr << "zelcam: " << watch.Size() << " features are watched\n";
    const Deadline deadline(options.durationMs);
    while (options.count == 0 || watch.Changes() < options.count) {
        Pause(options.intervalMs);
        if (Interrupted()) return options.count == 0 ? ExitCode::Ok : ExitCode::Interrupted;
        watch.Look();
        if (options.durationMs != 0 && deadline.Passed()) break;
    }
    return watch.Changes() < options.count ? ExitCode::Timeout : ExitCode::Ok;
}

}  // namespace

void AddWatchCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<WatchOptions>();
    Command command = app.AddCommand("watch", "Tell which features change");
    AddFeatureOptions(command, options->camera);
    AddFilterOptions(command, options->glob, options->visibility);
    command
        .AddOption("-i,--interval", options->intervalMs, "Time between two looks, in milliseconds")
        .TypeName("MS")
        .Range(1, 3600000)
        .ShowDefault();
    AddEndOptions(command, options->count, options->durationMs, "changes");
    command.Footer(
        "Examples:\n"
        "  zelcam watch 1 DeviceTemperature --interval 5000\n"
        "  zelcam watch 1 --duration 60000 --json     one JSON object per line\n\n"
        "The values are read from the camera each time, also those that are known.");
    Connect(command, invocation, options, RunWatch);
}
