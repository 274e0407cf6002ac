// zelcam grab: frames from cameras into files, or just counted.

#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <set>
#include <thread>
#include <unistd.h>
#include <utility>

#include <nlohmann/json.hpp>

#include "tools/zelcam/camerachoice.h"
#include "tools/zelcam/commands.h"
#include "tools/zelcam/featuresetting.h"
#include "tools/zelcam/grabjob.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/numbertext.h"
#include "tools/zelcam/outputfile.h"

namespace {

struct GrabOptions {
    SessionOptions session;
    std::vector<std::string> cameras;
    GrabSettings grab;
    FrameFiles::Settings files;
    std::string output;
    std::string format;
    std::string log;
    bool trigger = false;
    std::string triggerRate;

    bool WritesToStandardOutput() const { return output == standardStream; }
    Existing ExistingFiles() const { return files.overwrite ? Existing::Replace : Existing::Keep; }
};

[[noreturn]] void RefuseUse(const std::string& why) {
    throw Failure(ExitCode::Usage, why);
}

void CheckStandardOutput(const GrabOptions& options) {
    if (!options.WritesToStandardOutput()) return;
    if (options.session.json) RefuseUse("--json and --output - both want standard output");
    if (options.cameras.size() > 1) {
        RefuseUse("frames of several cameras cannot be told apart on standard output");
    }
    if (isatty(STDOUT_FILENO) != 0) {
        RefuseUse(
            "pictures are nothing for a terminal: lead standard output to a file or a "
            "program");
    }
}

// A rate, 0 for none, where triggers are wanted.
std::optional<double> TriggersPerSecond(const GrabOptions& options) {
    constexpr double fastest = 1000;  // waits are in milliseconds
    const std::string& text = options.triggerRate;
    if (text.empty()) return options.trigger ? std::optional<double>(0) : std::nullopt;
    const auto rate = ParseWhole<double>(text);
    if (!rate || !(*rate >= 0.001 && *rate <= fastest)) {
        RefuseUse("--trigger-rate is from 0.001 to 1000 a second, not " + text);
    }
    return rate;
}

FileNamePattern PatternOf(const GrabOptions& options) {
    const FileFormat format = options.files.format;
    if (format == FileFormat::None && !options.output.empty()) {
        RefuseUse("--output makes no sense with --format none");
    }
    const bool several = options.cameras.size() > 1;
    std::string text = options.output;
    if (text.empty())
        text = (several ? "{camera}-{n}" : "frame-{n}") + std::string(UsualEnding(format));
    FileNamePattern pattern(text);
    if (options.WritesToStandardOutput()) return pattern;
    if (options.grab.limits.count != 1 && !pattern.TellsFramesApart()) {
        RefuseUse(
            "every frame would get the same name: put {n} or {frame} into --output, as in "
            "frame-{n}.png");
    }
    if (several && format != FileFormat::None && !pattern.Has("camera")) {
        RefuseUse("every camera would write files of the same names: put {camera} into --output");
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
            RefuseUse("two cameras would write files of the same names, \"" +
                      namers.back().KnownName(1) + "\" for instance: grab from them one by one");
        }
    }
    return namers;
}

// Looks before anything is grabbed, as far as names are known, at those that a folder may well
// hold. Whatever exists later on is not overwritten either.
void RequireUsableNames(const GrabOptions& options, const std::vector<FrameNamer>& namers) {
    const bool writes =
        options.files.format != FileFormat::None && !options.WritesToStandardOutput();
    for (const FrameNamer& namer : namers) {
        if (writes && namer.KnowsNames()) RequireFolder(namer.KnownName(1));
    }
    if (options.files.overwrite) return;
    if (!options.log.empty()) RequireNew(options.log);
    if (!writes) return;
    constexpr uint64_t most = 100000;
    const uint64_t count = std::clamp<uint64_t>(options.grab.limits.count, 1, most);
    for (const FrameNamer& namer : namers) {
        for (uint64_t number = 1; number <= count && namer.KnowsNames(); ++number) {
            const std::string name = namer.KnownName(number);
            RequireNew(name);
            if (options.files.format == FileFormat::Raw) RequireNew(name + ".txt");
        }
    }
}

using Jobs = std::vector<std::unique_ptr<GrabJob>>;

void RunJobs(const Jobs& jobs, const GrabTargets& targets) {
    std::vector<std::thread> threads;
    for (size_t i = 1; i < jobs.size(); ++i)
        threads.emplace_back([&, i] { jobs[i]->Run(targets); });
    jobs.front()->Run(targets);
    for (std::thread& thread : threads)
        thread.join();
}

// Failures of files are told with the first camera.
void Finish(FrameFiles* files, FrameLog* log, GrabReport& report) {
    const std::optional<Failure> failure = files != nullptr ? files->Finish() : std::nullopt;
    if (failure) report.NoteFailure(*failure);
    try {
        if (log != nullptr) log->Finish();
    } catch (const Failure& unwritten) {
        report.NoteFailure(unwritten);
    }
}

// Frames that are in the queue are written after the cameras were stopped.
void RunAll(const GrabOptions& options, const Jobs& jobs) {
    std::optional<FrameLog> log;
    if (!options.log.empty()) log.emplace(options.log, options.ExistingFiles());
    std::optional<FrameFiles> files;
    FrameLog* const logOrNull = log ? &*log : nullptr;
    if (options.files.format != FileFormat::None) files.emplace(options.files, logOrNull);
    FrameFiles* const filesOrNull = files ? &*files : nullptr;
    GrabProgress progress(options.grab.limits.count * jobs.size());
    RunJobs(jobs, {filesOrNull, logOrNull, &progress});
    Finish(filesOrNull, logOrNull, jobs.front()->Report());
}

ExitCode Print(const GrabOptions& options, const Jobs& jobs) {
    ExitCode code = ExitCode::Ok;
    auto list = nlohmann::ordered_json::array();
    for (const auto& job : jobs) {
        const GrabReport& report = job->Report();
        if (code == ExitCode::Ok) code = report.exitCode;
        if (options.session.json) {
            list.push_back(report.AsJson());
            continue;
        }
        std::ostream& out = options.WritesToStandardOutput() ? std::cerr : std::cout;
        if (job != jobs.front()) out << '\n';
        report.PrintText(out, std::cerr);
    }
    if (!options.session.json) return code;
    if (jobs.size() == 1) {
        std::cout << JsonText(list.front()) << '\n';
    } else {
        const nlohmann::ordered_json result = {{"cameras", std::move(list)},
                                               {"exitCode", static_cast<int>(code)}};
        std::cout << JsonText(result) << '\n';
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
        options.files.threads = 1;  // which keeps the order
        std::signal(SIGPIPE, SIG_IGN);
    }
    const Session session(options.session);
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
    command
        .AddOption("cameras", options.cameras,
                   "Identifier, serial number or user name of each camera, or its number in "
                   "`zelcam list`. Left out: the first one")
        .TypeName("CAMERA");
    command
        .AddOption("-n,--count", options.grab.limits.count,
                   "Frames to grab, from each camera; 0: until Ctrl-C")
        .TypeName("N")
        .ShowDefault();
    command
        .AddOption("-o,--output", options.output,
                   "File names, with {n} for the number of the frame (0001, 0002, ...), {frame} "
                   "for the number the camera gave it, {camera} for the camera's identifier "
                   "[frame-{n}.png, and for several cameras {camera}-{n}.png]; -: standard output")
        .TypeName("PATTERN");
    command
        .AddOption("-f,--format", options.format,
                   "png, tiff (without compression: larger, and fastest), jpeg (small, and with "
                   "losses), raw (the bytes as the camera sent them, and a text that describes "
                   "them) or none (only count) [by the ending of --output, else png]")
        .TypeName("FORMAT")
        .OneOf(formatNames);
    command.AddFlag("--overwrite", options.files.overwrite, "Replace files that exist already");
    command.AddOption("--log", options.log, "Also write a table of all frames to this file (CSV)")
        .TypeName("FILE");
}

void AddSpeedOptions(Command command, GrabOptions& options) {
    command
        .AddOption("-b,--buffers", options.grab.buffers,
                   "Frames that can wait in memory of the producer; never fewer than it needs")
        .TypeName("N")
        .Range(1, 4096)
        .ShowDefault();
    command
        .AddOption("--queue", options.files.waiting,
                   "Frames that can wait to be written. When it is full, grabbing waits, and the "
                   "camera may lose frames")
        .TypeName("N")
        .Range(1, 65536)
        .ShowDefault();
    command
        .AddOption("--threads", options.files.threads,
                   "Threads that convert and write frames; 0: one for each processor")
        .TypeName("N")
        .Range(0, 64)
        .ShowDefault();
}

void AddCameraOptions(Command command, GrabOptions& options) {
    AddTimeoutOption(command, options.grab.limits.timeoutMs);
    AddAccessOption(command, options.grab.access, {"readonly", "control", "exclusive"});
    command
        .AddOption("--set", options.grab.features,
                   "Set a feature of the camera first; may be given several times and is done in "
                   "that order")
        .TypeName("NAME=VALUE")
        .OneValueEach();
    command.AddFlag("--trigger", options.trigger,
                    "Send the camera a software trigger for each frame, the next one when a frame "
                    "came");
    command
        .AddOption("--trigger-rate", options.triggerRate,
                   "Send so many software triggers a second instead")
        .TypeName("HZ");
}

}  // namespace

void AddGrabCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<GrabOptions>();
    Command command = app.AddCommand("grab", "Grab frames and write them to files");
    AddFrameOptions(command, *options);
    AddSpeedOptions(command, *options);
    AddCameraOptions(command, *options);
    AddSessionOptions(command, options->session);
    command.Footer(
        "Examples:\n"
        "  zelcam grab                                one picture of the first camera\n"
        "  zelcam grab 4711 -n 10 -o shot-{n}.png     ten pictures of serial number 4711\n"
        "  zelcam grab left right -n 5 --log all.csv  five pictures of each, and a table\n"
        "  zelcam grab left -n 0 -f none              count frames until Ctrl-C\n"
        "  zelcam grab --set ExposureTime=500         one picture with a short exposure\n"
        "  zelcam grab -n 3 -o \"{camera}-{frame}.raw\"  the bytes of three frames\n"
        "  zelcam grab -f jpeg -o - | display -       a look at it\n\n"
        "Pictures of more than 8 bits are written with 16: values are stretched so that the "
        "camera's white is white. Names of frames that are incomplete get \"-incomplete\". When "
        "nothing arrives, the program lists what it could check and what to do next.");
    Connect(command, invocation, options, options->session, RunGrab);
}
