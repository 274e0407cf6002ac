// zelcam check: checks that a camera and its producer do what programs rely on.

#include <iomanip>
#include <iostream>
#include <optional>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/listing.h"
#include "tools/zelcam/checks/checklist.h"
#include "tools/zelcam/checks/featurechecks.h"
#include "tools/zelcam/checks/streamchecks.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

using Verdict = CheckResult::Verdict;

struct CheckOptions : CameraOptions {
    GrabLimits limits = {100, 5000};
};

void PrintLine(const CheckResult& result) {
    std::cout << std::left << std::setw(8) << VerdictWords(result.verdict) << ' ' << std::setw(26)
              << result.name << ' ' << std::right << std::setw(7) << std::fixed
              << std::setprecision(0) << result.milliseconds << " ms  " << Printable(result.detail)
              << std::endl;
}

void PrintResults(const Camera& camera, const CheckList& checks) {
    Json list = Json::array();
    for (const CheckResult& result : checks.Results()) {
        list.push_back({{"check", result.name},
                        {"verdict", VerdictWords(result.verdict)},
                        {"detail", result.detail},
                        {"milliseconds", result.milliseconds}});
    }
    Json result = {{"camera", camera.id}, {"vendor", camera.vendor}, {"model", camera.model}};
    result.update(OriginAsJson(camera));
    result.update({{"checks", std::move(list)},
                   {"passed", checks.Count(Verdict::Passed)},
                   {"failed", checks.Count(Verdict::Failed)},
                   {"skipped", checks.Count(Verdict::Skipped)},
                   {"interrupted", Interrupted()}});
    PrintJson(result);
}

void CheckFeatures(CheckList& checks, OpenedCamera& camera) {
    for (Module module : {Module::Camera, Module::Local, Module::Interface, Module::Stream}) {
        const std::string words = ModuleWords(module);
        checks.Run("read " + words, [&] { return CheckReading(camera.Features(module)); });
        checks.Run("limits of " + words, [&] { return CheckLimits(camera.Features(module)); });
    }
    checks.Run("write and restore", [&] { return CheckWriting(camera); });
    checks.Run("configuration", [&] { return CheckConfiguration(camera); });
}

void CheckStream(CheckList& checks, OpenedCamera& camera, const GrabLimits& limits) {
    const uint64_t timeoutMs = limits.timeoutMs;
    checks.Run("frames", [&] { return CheckFrames(camera, limits); });
    checks.Run("start and stop", [&] { return CheckStartStop(camera, timeoutMs); });
    checks.Run("counted frames", [&] { return CheckCountedFrames(camera, timeoutMs); });
    checks.Run("end of a wait", [&] { return CheckTimeout(camera.Stream()); });
    checks.Run("cancel", [&] { return CheckCancel(camera.Stream()); });
    checks.Run("search while streaming", [&] { return CheckSearch(camera, timeoutMs); });
}

void RunChecks(CheckList& checks, const CheckOptions& options, const Camera& camera) {
    std::optional<OpenedCamera> opened;
    const auto open = [&] {
        opened.reset();
        opened.emplace(camera, options.access);
        return std::to_string(opened->Device().GetNumStreams()) + " streams";
    };
    if (!checks.Run("open", open)) return;
    CheckFeatures(checks, *opened);
    CheckStream(checks, *opened, options.limits);
    if (!checks.Run("close and open again", open)) return;
    checks.Run("unplug", [&] { return CheckUnplug(*opened, camera.producer); });
    checks.Run("close", [&] {
        opened.reset();
        return std::string();
    });
}

ExitCode RunCheck(const CheckOptions& options) {
    const bool json = options.json;
    const Session session(options, EnoughToSelect({options.camera}));
    const Camera& camera = SelectCamera(session, options.camera);
    if (!json) std::cout << "Camera " << camera.Description() << "\n\n" << std::flush;
    CheckList checks([&](const CheckResult& result) {
        if (!json) PrintLine(result);
    });
    RunChecks(checks, options, camera);
    const size_t failed = checks.Count(Verdict::Failed);
    if (json) {
        PrintResults(camera, checks);
    } else {
        std::cout << '\n'
                  << checks.Count(Verdict::Passed) << " passed, " << failed << " failed, "
                  << checks.Count(Verdict::Skipped) << " skipped"
                  << (Interrupted() ? ", ended with Ctrl-C\n" : "\n");
    }
    if (Interrupted()) return ExitCode::Interrupted;
    return failed == 0 ? ExitCode::Ok : ExitCode::CheckFailed;
}

}  // namespace

void AddCheckCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(
        app, invocation, "check", "Check that a camera does what programs rely on", RunCheck);
    AddCameraArgument(command, options.camera, false);
    AddSampleOptions(command, options.limits.count, options.limits.timeoutMs,
                     "to look for lost ones");
    AddAccessOption(command, options.access, kAccessNames);
    AddSessionOptions(command, options);
    command.Footer(
        "Examples:\n"
        "  zelcam check 1\n"
        "  zelcam check 4711 --producer /opt/vendor/lib/vendor.cti\n\n"
        "The command writes settings and restores them: use a camera that nobody works with. It "
        "unplugs a simulated camera at the end. The exit code is 10 when a check fails.");
}

}  // namespace ZelTool
