// zelcam watch: prints features whose values change.

#include <iostream>
#include <set>
#include <utility>

#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/suggestion.h"
#include "tools/zelcam/console/timetext.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/features/featuretree.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

struct WatchOptions : CameraOptions {
    std::string glob;
    std::string visibility = "guru";
    uint64_t intervalMs = 500;
    uint64_t durationMs = 0;
    uint64_t count = 0;
};

// The value of a feature (a text unless the output is JSON), or null and the reason why there is
// none.
using Seen = std::pair<Json, std::string>;

std::string SeenText(const Seen& seen) {
    return Printable(seen.first.is_null() ? "(" + seen.second + ")"
                                          : seen.first.get<std::string>());
}

class Watch {
  public:
    Watch(ZelGenParam::Array& features, const FeatureFilter& filter, bool json) : json_(json) {
        std::set<ZelGenParam::Param*> known;
        VisitFeatures(features, filter, [&](ZelGenParam::Param& feature, const auto&) {
            if (known.insert(&feature).second) watched_.emplace_back(&feature, LookAt(feature));
        });
    }

    size_t Size() const { return watched_.size(); }
    uint64_t Changes() const { return changes_; }
    bool HasFailed() const { return failed_; }

    void Look() {
        for (auto& [feature, before] : watched_) {
            Seen now = LookAt(*feature);
            if (now == before) continue;
            PrintChange(feature->GetName(), before, now);
            before = std::move(now);
            ++changes_;
        }
    }

  private:
    Seen LookAt(ZelGenParam::Param& feature) {
        try {
            const std::optional<std::string> text = ReadFeature(feature, true);
            if (!text) return {Json(), AccessMark(feature)};
            return {json_ ? ReadFeatureAsJson(feature) : Json(*text), ""};
        } catch (const CameraLost&) {
            throw;
        } catch (const Failure& failure) {
            failed_ = true;
            return {Json(), failure.what()};
        }
    }

    void PrintChange(const std::string& name, const Seen& before, const Seen& now) const {
        const WallClock::time_point time = WallClock::now();
        if (!json_) {
            std::cout << TimeOfDay(time) << "  " << name << "  " << SeenText(before) << " -> "
                      << SeenText(now) << std::endl;
            return;
        }
        Json line = {{"time", TimeStamp(time)},
                     {"name", name},
                     {"before", before.first},
                     {"now", now.first}};
        if (now.first.is_null()) line["remark"] = now.second;
        PrintJsonLine(line);
    }

    bool json_;
    bool failed_ = false;
    uint64_t changes_ = 0;
    std::vector<std::pair<ZelGenParam::Param*, Seen>> watched_;
};

ExitCode LookUntilTheEnd(Watch& watch, const WatchOptions& options) {
    const Deadline deadline(options.durationMs);
    while (options.count == 0 || watch.Changes() < options.count) {
        Pause(options.intervalMs);
        if (Interrupted()) return options.count == 0 ? ExitCode::Ok : ExitCode::Interrupted;
        watch.Look();
        if (deadline.Passed()) break;
    }
    return watch.Changes() < options.count ? ExitCode::Timeout : ExitCode::Ok;
}

ExitCode RunWatch(const WatchOptions& options) {
    FeatureSession session(options);
    Watch watch(session.Features(), {options.glob, VisibilityOf(options.visibility), false},
                options.json);
    if (watch.Size() == 0) {
        throw Failure(ExitCode::FeatureFailed,
                      "no feature matches \"" + options.glob + "\"" +
                          DidYouMean(options.glob, NamesOf(session.Features())));
    }
    std::cerr << "zelcam: " << watch.Size()
              << (watch.Size() == 1 ? " feature is watched\n" : " features are watched\n");
    const ExitCode end = LookUntilTheEnd(watch, options);
    if (watch.HasFailed()) {
        throw Failure(ExitCode::FeatureFailed, "not every feature could be read each time");
    }
    return end;
}

}  // namespace

void AddWatchCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "watch", "Print features when their values change", RunWatch);
    AddModuleOptions(command, options);
    AddFilterOptions(command, options.glob, options.visibility);
    command
        .AddOption("-i,--interval", "MS", options.intervalMs,
                   "Time between two readings, in milliseconds")
        .Range(1, 3600000);
    AddEndOptions(command, options.count, options.durationMs, "changes");
    command.Footer(
        "Examples:\n"
        "  zelcam watch 1 DeviceTemperature --interval 5000\n"
        "  zelcam watch 1 --duration 60000 --json     one JSON object per line\n\n"
        "Each reading asks the camera, even for values that are cached. The exit code is 8 when "
        "the camera is lost, which ends the command, and when a feature could not be read.");
}

}  // namespace ZelTool
