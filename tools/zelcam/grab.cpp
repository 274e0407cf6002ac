// zelcam grab: frames from a camera into files, or just counted.

#include <iostream>
#include <memory>
#include <utility>

#include "tools/zelcam/camerachoice.h"
#include "tools/zelcam/commands.h"
#include "tools/zelcam/featurevalue.h"
#include "tools/zelcam/framefile.h"
#include "tools/zelcam/grabloop.h"
#include "tools/zelcam/openedcamera.h"

namespace {

struct GrabOptions {
    SessionOptions session;
    std::string camera;
    GrabLimits limits;
    uint64_t buffers = 8;
    std::vector<std::string> settings;
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
    if (options.limits.count != 1 && !pattern.TellsFramesApart()) {
        throw Failure(ExitCode::Usage,
                      "every frame would overwrite the one before: put {n} or "
                      "{frame} into --output, as in frame-{n}.png");
    }
    return {format, std::move(pattern), camera.id};
}

ExitCode RunGrab(const GrabOptions& options) {
    const Session session(options.session);
    const Camera& camera = SelectCamera(session, options.camera);
    const FrameWriter writer = MakeWriter(options, camera);
    GrabReport report;
    report.camera = camera;
    {
        OpenedCamera opened(camera, options.access);
        if (!options.settings.empty()) {
            ZelGenParam::Array& features = opened.Features(Module::Camera);
            for (const std::string& setting : options.settings)
                SetFeature(features, setting);
        }
        GrabFrames(opened, static_cast<size_t>(options.buffers), options.limits, writer, report);
    }
    if (options.session.json) {
        report.PrintJson(std::cout);
    } else {
        report.PrintText(std::cout, std::cerr);
    }
    return report.exitCode;
}

void AddFrameOptions(Command command, GrabOptions& options) {
    AddCameraArgument(command, options.camera, false);
    command.AddOption("-n,--count", options.limits.count, "Frames to grab; 0: until Ctrl-C")
        .TypeName("N")
        .ShowDefault();
    command
        .AddOption("-o,--output", options.output,
                   "File names, with {n} for the number of the frame (0001,\n"
                   "0002, ...), {frame} for the number the camera gave it,\n"
                   "{camera} for the camera's identifier [frame-{n}.png]")
        .TypeName("PATTERN");
    command
        .AddOption("-f,--format", options.format,
                   "png, raw (the bytes as the camera sent them, and a text\n"
                   "that describes them) or none (only count)\n"
                   "[by the ending of --output, else png]")
        .TypeName("FORMAT")
        .OneOf({"png", "raw", "none"});
}

void AddCameraOptions(Command command, GrabOptions& options) {
    AddTimeoutOption(command, options.limits.timeoutMs);
    command
        .AddOption("-b,--buffers", options.buffers,
                   "Frames that can wait in memory; never fewer than the\n"
                   "producer needs")
        .TypeName("N")
        .Range(1, 4096)
        .ShowDefault();
    AddAccessOption(command, options.access, {"readonly", "control", "exclusive"});
    command
        .AddOption("--set", options.settings,
                   "Set a feature of the camera first; may be given several\n"
                   "times and is done in that order")
        .TypeName("NAME=VALUE")
        .OneValueEach();
}

}  // namespace

void AddGrabCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<GrabOptions>();
    Command command = app.AddCommand("grab", "Grab frames and write them to files");
    AddFrameOptions(command, *options);
    AddCameraOptions(command, *options);
    AddSessionOptions(command, options->session);
    command.Footer(
        "Examples:\n"
        "  zelcam grab                                one picture of the first camera\n"
        "  zelcam grab 4711 -n 10 -o shot-{n}.png     ten pictures of serial number 4711\n"
        "  zelcam grab left -n 0 -f none              count frames until Ctrl-C\n"
        "  zelcam grab --set ExposureTime=500         one picture with a short exposure\n"
        "  zelcam grab -n 3 -o \"{camera}-{frame}.raw\"  the bytes of three frames\n\n"
        "Pictures of more than 8 bits are written with 16: values are stretched so that the "
        "camera's\nwhite is white. When nothing arrives, the program lists what it could check and "
        "what to do next.");
    command.OnChoice([options, &invocation] {
        invocation.json = options->session.json;
        invocation.run = [options] { return RunGrab(*options); };
    });
}
