// zelcam xml: the GenApi description of a module.

#include <iostream>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/description.h"
#include "tools/zelcam/camera/moduleport.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/outputfile.h"

namespace ZelTool {

namespace {

struct XmlOptions : CameraOptions {
    std::string output;
};

// The session must end before ModulePort may use the producer.
ModulePlace FindPlace(const XmlOptions& options) {
    const Session session(options, EnoughToSelect({options.camera}));
    const Camera& camera = SelectCamera(session, options.camera);
    if (camera.producer.empty()) {
        throw Failure(ExitCode::CannotOpen,
                      "the producer of the camera is unknown: the camera appeared too late");
    }
    return {camera.producer, camera.interfaceId, camera.id, ModuleOf(options.module)};
}

std::string ReadDescription(const ModulePort& port) {
    std::string places;
    for (const std::string& url : port.DescriptionUrls()) {
        if (const auto place = ParseDescriptionUrl(url)) {
            return Unpack(place->local ? port.Read(place->address, place->size)
                                       : ReadDescriptionFile(place->file));
        }
        places += "\n  " + url;
    }
    throw Failure(ExitCode::FeatureFailed,
                  places.empty() ? "the module has no description"
                                 : "the description is at an unsupported place:" + places);
}

ExitCode RunXml(const XmlOptions& options) {
    const ModulePlace place = FindPlace(options);
    const std::string text = ReadDescription(ModulePort(place));
    const bool toFile = !options.output.empty() && options.output != kStandardStream;
    if (toFile) WriteFile(options.output, text);
    if (options.json) {
        Json result = {{"camera", place.cameraId}, {"module", options.module}};
        if (toFile) {
            result.update({{"file", options.output}, {"bytes", text.size()}});
        } else {
            result["xml"] = text;
        }
        PrintJson(result);
    } else if (!toFile) {
        std::cout << text;
    }
    return ExitCode::Ok;
}

}  // namespace

void AddXmlCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "xml", "Print the GenApi description of a camera", RunXml);
    AddCameraArgument(command, options.camera, false);
    command
        .AddOption("-m,--module", "MODULE", options.module,
                   "Which module: camera (or device), local, interface, stream or system")
        .OneOf({"camera", "device", "local", "interface", "stream", "system"});
    command.AddOption("-o,--output", "FILE", options.output,
                      "Write to this file; -: standard output");
    AddSessionOptions(command, options);
    command.Footer(
        "Examples:\n"
        "  zelcam xml 1 -o camera.xml\n"
        "  zelcam xml 1 --module stream\n\n"
        "The text is the original one, unpacked if it was zipped.");
}

}  // namespace ZelTool
