// zelcam grab: grabs frames and writes or counts them.

#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <set>
#include <thread>
#include <unistd.h>
#include <utility>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/numbertext.h"
#include "tools/zelcam/console/outputfile.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/frames/grabjob.h"

namespace ZelTool {

namespace {

struct GrabOptions : SessionOptions {
    std::vector<std::string> cameras;
    GrabSettings grab;
    FrameFiles::Settings files;
    std::string output;
    std::string format;
    std::string log;
    bool trigger = false;
    std::string triggerRate;

    bool WritesToStandardOutput() const { return output == kStandardStream; }
    Existing ExistingFiles() const { return files.overwrite ? Existing::Replace : Existing::Keep; }
};

[[noreturn]] void RefuseUse(const std::string& why) {
    throw Failure(ExitCode::Usage, why);
}

void CheckStandardOutput(const GrabOptions& options) {
    if (!options.WritesToStandardOutput()) return;
    if (options.json) RefuseUse("--json and --output - both write to standard output");
    if (options.cameras.size() > 1) {
        RefuseUse("only one camera can write frames to standard output");
    }
    if (isatty(STDOUT_FILENO) != 0) {
        RefuseUse(
            "pictures cannot be written to a terminal: redirect standard output to a file or a "
            "program");
    }
}

// The trigger rate; 0: a trigger after each frame. Nothing when no triggers are wanted.
std::optional<double> TriggersPerSecond(const GrabOptions& options) {
    constexpr double kFastest = 1000;  // waits are counted in milliseconds
    const std::string& text = options.triggerRate;
    if (text.empty()) return options.trigger ? std::optional<double>(0) : std::nullopt;
    const auto rate = ParseWhole<double>(text);
    if (!rate || !(*rate >= 0.001 && *rate <= kFastest)) {
        RefuseUse("--trigger-rate must be from 0.001 to 1000 per second, not " + text);
    }
    return rate;
}

FileNamePattern PatternOf(const GrabOptions& options) {
    const FileFormat format = options.files.format;
    if (format == FileFormat::None && !options.output.empty()) {
        RefuseUse("--output cannot be combined with --format none");
    }
    const bool several = options.cameras.size() > 1;
    std::string text = options.output;
    if (text.empty()) text = (several ? "{camera}-{n}" : "frame-{n}") + UsualEnding(format);
    FileNamePattern pattern(text);
    if (options.WritesToStandardOutput()) return pattern;
    if (options.grab.limits.count != 1 && !pattern.DistinguishesFrames()) {
        RefuseUse(
            "every frame would get the same name: put {n} or {frame} into --output, such as "
            "frame-{n}.png");
    }
    if (several && format != FileFormat::None && !pattern.Has("camera")) {
        RefuseUse("all cameras would write files of the same names: put {camera} into --output");
    }
    return pattern;
}

std::vector<FrameNamer> NamersOf(const std::vector<const Camera*>& cameras,
                                 const FileNamePattern& pattern, bool writes) {
    std::vector<FrameNamer> namers;
    std::set<std::string> names;
    for (const Camera* camera : cameras) {
        namers.emplace_back(pattern, camera->id);
        if (!names.insert(namers.back().KnownName(1)).second && writes) {
            RefuseUse("two cameras would write files of the same names, such as \"" +
                      namers.back().KnownName(1) + "\": grab from them one after the other");
        }
    }
    return namers;
}

// Checks before grabbing that files with known names do not exist yet. Their number is bounded;
// files that appear later are not overwritten either.
void RequireUsableNames(const GrabOptions& options, const std::vector<FrameNamer>& namers) {
    const bool writes =
        options.files.format != FileFormat::None && !options.WritesToStandardOutput();
    for (const FrameNamer& namer : namers) {
        if (writes && namer.KnowsNames()) RequireFolder(namer.KnownName(1));
    }
    if (options.files.overwrite) return;
    if (!options.log.empty()) RequireNew(options.log);
    if (!writes) return;
    constexpr uint64_t kMost = 100000;
    const uint64_t count = std::clamp<uint64_t>(options.grab.limits.count, 1, kMost);
    for (const FrameNamer& namer : namers) {
        for (uint64_t number = 1; number <= count && namer.KnowsNames(); ++number) {
            const std::string name = namer.KnownName(number);
            RequireNew(name);
            if (options.files.format == FileFormat::Raw) RequireNew(name + ".txt");
        }
    }
}

using Jobs = std::vector<std::unique_ptr<GrabJob>>;

void RunJobs(const Jobs& jobs, GrabTargets& targets) {
    std::vector<std::thread> threads;
    for (size_t i = 1; i < jobs.size(); ++i)
        threads.emplace_back([&, i] { jobs[i]->Run(targets); });
    jobs.front()->Run(targets);
    for (std::thread& thread : threads)
        thread.join();
}

// Grabs, and writes the frames that are still in the queue when the cameras have stopped. Adds
// failures of files to the report of the first camera.
void RunAll(const GrabOptions& options, const Jobs& jobs) {
    GrabTargets targets{GrabProgress(options.grab.limits.count * jobs.size()), {}, {}};
    if (!options.log.empty()) targets.log.emplace(options.log, options.ExistingFiles());
    if (options.files.format != FileFormat::None) {
        targets.files.emplace(options.files, targets.log ? &*targets.log : nullptr);
    }
    RunJobs(jobs, targets);
    GrabReport& report = jobs.front()->Report();
    if (targets.files) report.NoteFailure(targets.files->Finish());
    if (targets.log) report.NoteFailure(FailureOf([&] { targets.log->Finish(); }));
}

ExitCode Print(const GrabOptions& options, const Jobs& jobs) {
    ExitCode code = ExitCode::Ok;
    auto list = Json::array();
    for (const auto& job : jobs) {
        const GrabReport& report = job->Report();
        if (code == ExitCode::Ok) code = report.exitCode;
        if (options.json) {
            list.push_back(report.AsJson());
            continue;
        }
        std::ostream& out = options.WritesToStandardOutput() ? std::cerr : std::cout;
        if (job != jobs.front()) out << '\n';
        report.PrintText(out, std::cerr);
    }
    if (!options.json) return code;
    if (jobs.size() == 1) {
        PrintJson(list.front());
    } else {
        PrintJson({{"cameras", std::move(list)}, {"exitCode", static_cast<int>(code)}});
    }
    return code;
}

ExitCode RunGrab(const GrabOptions& given) {
    GrabOptions options = given;
    options.files.format = FormatOf(options.format, options.output);
    CheckStandardOutput(options);
    RequireAssignments(options.grab.features);
    const FileNamePattern pattern = PatternOf(options);
    options.grab.triggersPerSecond = TriggersPerSecond(options);
    if (options.WritesToStandardOutput()) {
        options.files.threads = 1;  // keeps the frames in order
        std::signal(SIGPIPE, SIG_IGN);
    }
    const Session session(options, EnoughToSelect(options.cameras));
    const std::vector<const Camera*> cameras = SelectCameras(session, options.cameras);
    std::vector<FrameNamer> namers =
        NamersOf(cameras, pattern, options.files.format != FileFormat::None);
    RequireUsableNames(options, namers);
    Jobs jobs;
    for (size_t i = 0; i < cameras.size(); ++i)
        jobs.push_back(std::make_unique<GrabJob>(*cameras[i], options.grab, std::move(namers[i])));
    RunAll(options, jobs);
    for (const auto& job : jobs)
        job->Close();
    return Print(options, jobs);
}

void AddFrameOptions(Command command, GrabOptions& options) {
    command.AddOption("cameras", "CAMERA", options.cameras,
                      "Identifier, serial number or user name of each camera, or its number in "
                      "`zelcam list`. Default: the first camera");
    command.AddOption("-n,--count", "N", options.grab.limits.count,
                      "Frames to grab from each camera; 0: until Ctrl-C");
    command.AddOption("-o,--output", "PATTERN", options.output,
                      "File names: {n} is the number of the frame (0001, 0002, ...), {frame} the "
                      "number that the camera gave it, {camera} the camera's identifier "
                      "[frame-{n}.png, for several cameras {camera}-{n}.png]; -: standard output");
    command
        .AddOption("-f,--format", "FORMAT", options.format,
                   "png, tiff (uncompressed: large and fastest), jpeg (small, lossy), raw (the "
                   "bytes that the camera sent, and a text that describes them) or none (only "
                   "count) [from the extension in --output, else png]")
        .OneOf(kFormatNames);
    command.AddFlag("--overwrite", options.files.overwrite, "Replace files that already exist");
    command.AddOption("--log", "FILE", options.log,
                      "Also write a table of all frames to this file (CSV)");
}

void AddSpeedOptions(Command command, GrabOptions& options) {
    command
        .AddOption("-b,--buffers", "N", options.grab.buffers,
                   "Frames that can wait in the producer's memory; more if the producer needs more")
        .Range(1, 4096);
    command
        .AddOption("--queue", "N", options.files.waiting,
                   "Frames that can wait to be written. When the queue is full, grabbing waits, "
                   "and the camera may lose frames")
        .Range(1, 65536);
    command
        .AddOption("--threads", "N", options.files.threads,
                   "Threads that convert and write frames; 0: one per processor")
        .Range(0, 64);
}

void AddCameraOptions(Command command, GrabOptions& options) {
    AddTimeoutOption(command, options.grab.limits.timeoutMs);
    AddAccessOption(command, options.grab.access, {"readonly", "control", "exclusive"});
    command
        .AddOption("--set", "NAME=VALUE", options.grab.features,
                   "Set a feature of the camera first; may be repeated. Features are set in the "
                   "given order")
        .OneValueEach();
    command.AddFlag("--trigger", options.trigger,
                    "Send the camera software triggers, each after the frame of the one before");
    command.AddOption("--trigger-rate", "HZ", options.triggerRate,
                      "Send this many software triggers per second instead");
}

}  // namespace

void AddGrabCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "grab", "Grab frames and write them to files", RunGrab);
    AddFrameOptions(command, options);
    AddSpeedOptions(command, options);
    AddCameraOptions(command, options);
    AddSessionOptions(command, options);
    command.Footer(
        "Examples:\n"
        "  zelcam grab                                one picture of the first camera\n"
        "  zelcam grab 4711 -n 10 -o shot-{n}.png     ten pictures of serial number 4711\n"
        "  zelcam grab left right -n 5 --log all.csv  five pictures of each, and a table\n"
        "  zelcam grab left -n 0 -f none              count frames until Ctrl-C\n"
        "  zelcam grab --set ExposureTime=500         one picture with a short exposure\n"
        "  zelcam grab -n 3 -o {camera}-{frame}.raw   the bytes of three frames\n"
        "  zelcam grab -f jpeg -o - | display -       show a picture\n\n"
        "Pictures of more than 8 bits are written with 16: values are stretched so that the "
        "camera's white is white. The names of incomplete frames get \"-incomplete\". When no "
        "frame arrives, the program lists what it has checked and what to do next.");
}

}  // namespace ZelTool
