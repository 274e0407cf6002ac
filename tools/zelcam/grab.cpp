// zelcam grab: frames from a camera into files, or just counted.

#include <iostream>
#include <memory>
#include <utility>

#include "tools/zelcam/acquisition.h"
#include "tools/zelcam/camerachoice.h"
#include "tools/zelcam/commands.h"
#include "tools/zelcam/framefile.h"
#include "tools/zelcam/grabreport.h"
#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/progress.h"
#include "tools/zelcam/words.h"

namespace {

struct GrabOptions {
    SessionOptions session;
    std::string camera;
    uint64_t count = 1;
    size_t buffers = 8;
    uint64_t timeoutMs = 5000;
    std::string output;
    std::string format;
    std::string access = "control";
};

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

FileFormat ChooseFormat(const GrabOptions& options) {
    if (options.format == "none") return FileFormat::None;
    if (options.format == "png") return FileFormat::Png;
    return options.format == "raw" || EndsWith(options.output, ".raw") ? FileFormat::Raw
                                                                       : FileFormat::Png;
}

FrameWriter MakeWriter(const GrabOptions& options, const Camera& camera) {
    const FileFormat format = ChooseFormat(options);
    if (format == FileFormat::None && !options.output.empty()) {
        throw Failure(ExitCode::Usage, "--output makes no sense with --format none");
    }
    std::string text = options.output;
    if (text.empty()) text = format == FileFormat::Raw ? "frame-{n}.raw" : "frame-{n}.png";
    FileNamePattern pattern(text);
    if (options.count != 1 && !pattern.TellsFramesApart()) {
        throw Failure(ExitCode::Usage,
                      "every frame would overwrite the one before: put {n} or "
                      "{frame} into --output, as in frame-{n}.png");
    }
    return {format, std::move(pattern), camera.id};
}

ZelCam::DeviceAccess AccessOf(const std::string& name) {
    if (name == "readonly") return ZelCam::DeviceAccess::ReadOnly;
    return name == "exclusive" ? ZelCam::DeviceAccess::Exclusive : ZelCam::DeviceAccess::Control;
}

// A producer that the user named must work; one found in a folder only gets a warning.
void TellAboutProducers(const Session& session) {
    for (const Producer& producer : session.Producers()) {
        if (producer.state != Producer::State::Failed) continue;
        const std::string message = "producer " + producer.file + ": " + producer.reason;
        if (producer.origin != Producer::Origin::Environment) {
            throw Failure(ExitCode::NoProducer, message);
        }
        std::cerr << "zelcam: warning: " << message << '\n';
    }
}

// Notes why no frame came, and how the program ends for it.
void EndWithoutFrame(ZelCamErr code, const GrabOptions& options, const Camera& camera,
                     ZelCam::Stream& stream, GrabReport& report) {
    if (code == ZelCamErr_GenTL_Abort && Interrupted()) {
        report.interrupted = true;
        if (options.count != 0) report.exitCode = ExitCode::Interrupted;
    } else if (code == ZelCamErr_GenTL_Timeout) {
        report.exitCode = ExitCode::Timeout;
        report.error = "no frame within " + std::to_string(options.timeoutMs) + " ms";
        report.checks = CheckSilence(stream, camera, report.statistics);
        report.otherCauses = OtherCauses(camera);
    } else {
        report.exitCode = ExitCode::AcquisitionFailed;
        report.error = "waiting for a frame failed: " + ErrorWords(code);
    }
}

void GrabFrames(const GrabOptions& options, const Camera& camera, const FrameWriter& writer,
                Acquisition& acquisition, GrabReport& report) {
    Progress progress(options.count);
    FrameStatistics& statistics = report.statistics;
    while (options.count == 0 || statistics.Frames() < options.count) {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* buffer = acquisition.WaitForFrame(options.timeoutMs, &code);
        if (buffer == nullptr) {
            EndWithoutFrame(code, options, camera, acquisition.Stream(), report);
            return;
        }
        const Frame frame(*buffer);
        statistics.Add(frame.frameId, frame.incomplete, FrameStatistics::Clock::now());
        report.NoteFrame(frame, writer.Write(frame, statistics.Frames()));
        acquisition.Requeue(*buffer);
        progress.Update(statistics);
    }
}

ExitCode RunGrab(const GrabOptions& options) {
    NoteInterrupts();
    const Session session(options.session, Session::Detail::Cameras);
    TellAboutProducers(session);
    const Camera& camera = ChooseCamera(session.Cameras(), options.camera);
    const FrameWriter writer = MakeWriter(options, camera);
    GrabReport report;
    report.camera = camera;
    {
        Acquisition acquisition(camera, AccessOf(options.access), options.buffers);
        try {
            GrabFrames(options, camera, writer, acquisition, report);
        } catch (const Failure& failure) {
            // What was received until then is told all the same.
            report.exitCode = failure.Code();
            report.error = failure.what();
        }
        report.underruns = acquisition.Stream().GetNumUnderrun();
    }
    if (options.session.json) {
        report.PrintJson(std::cout);
    } else {
        report.PrintText(std::cout, std::cerr);
    }
    return report.exitCode;
}

void AddFrameOptions(CLI::App& command, GrabOptions& options) {
    command
        .add_option("camera", options.camera,
                    "Identifier, serial number or user name of the camera, or\n"
                    "its number in `zelcam list`. Left out: the first one")
        ->type_name("CAMERA");
    command.add_option("-n,--count", options.count, "Frames to grab; 0: until Ctrl-C")
        ->type_name("N")
        ->capture_default_str();
    command
        .add_option("-o,--output", options.output,
                    "File names, with {n} for the number of the frame (0001,\n"
                    "0002, ...), {frame} for the number the camera gave it,\n"
                    "{camera} for the camera's identifier [frame-{n}.png]")
        ->type_name("PATTERN");
    command
        .add_option("-f,--format", options.format,
                    "png, raw (the bytes as the camera sent them, and a text\n"
                    "that describes them) or none (only count)\n"
                    "[by the ending of --output, else png]")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"png", "raw", "none"}).description(""));
}

void AddCameraOptions(CLI::App& command, GrabOptions& options) {
    command
        .add_option("-t,--timeout", options.timeoutMs,
                    "Longest wait for the next frame, in milliseconds")
        ->type_name("MS")
        ->check(CLI::Range(uint64_t{1}, uint64_t{86400000}).description(""))
        ->capture_default_str();
    command
        .add_option("-b,--buffers", options.buffers,
                    "Frames that can wait in memory; never fewer than the\n"
                    "producer needs")
        ->type_name("N")
        ->check(CLI::Range(size_t{1}, size_t{4096}).description(""))
        ->capture_default_str();
    command
        .add_option("-a,--access", options.access,
                    "readonly, control (others may read) or exclusive")
        ->type_name("ACCESS")
        ->check(CLI::IsMember({"readonly", "control", "exclusive"}).description(""))
        ->capture_default_str();
}

}  // namespace

void AddGrabCommand(CLI::App& app, Invocation& invocation) {
    auto options = std::make_shared<GrabOptions>();
    CLI::App* command = app.add_subcommand("grab", "Grab frames and write them to files");
    AddFrameOptions(*command, *options);
    AddCameraOptions(*command, *options);
    AddSessionOptions(*command, options->session);
    command->footer(
        "Examples:\n"
        "  zelcam grab                                one picture of the first camera\n"
        "  zelcam grab 4711 -n 10 -o shot-{n}.png     ten pictures of serial number 4711\n"
        "  zelcam grab left -n 0 -f none              count frames until Ctrl-C\n"
        "  zelcam grab -n 3 -o \"{camera}-{frame}.raw\"  the bytes of three frames\n\n"
        "Pictures of more than 8 bits are written with 16: values are stretched so that the "
        "camera's\nwhite is white. When nothing arrives, the program lists what it could check.");
    command->callback([options, &invocation] {
        invocation.json = options->session.json;
        invocation.run = [options] { return RunGrab(*options); };
    });
}
