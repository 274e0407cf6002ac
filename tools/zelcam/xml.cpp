// zelcam xml: the description that the features of a module come from.

#include <iostream>

#include <nlohmann/json.hpp>

#include "tools/zelcam/camerachoice.h"
#include "tools/zelcam/commands.h"
#include "tools/zelcam/description.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/moduleport.h"
#include "tools/zelcam/outputfile.h"

namespace {

struct XmlOptions {
    FeatureOptions camera;
    std::string output;
};

using Json = nlohmann::ordered_json;

// The session must be over before the producer is asked directly.
ModulePlace FindPlace(const XmlOptions& options) {
    const Session session(options.camera.session);
    const Camera& camera = SelectCamera(session, options.camera.camera);
    if (camera.producer.empty()) {
        throw Failure(ExitCode::CannotOpen,
                      "it cannot be told to which producer the camera belongs");
    }
    return {camera.producer, camera.interfaceId, camera.id, ModuleOf(options.camera.module)};
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
                                 : "the description is at a place that is not looked at:" + places);
}

ExitCode RunXml(const XmlOptions& options) {
    const ModulePlace place = FindPlace(options);
    const std::string text = ReadDescription(ModulePort(place));
    const bool toFile = !options.output.empty() && options.output != standardStream;
    if (toFile) WriteFile(options.output, text);
    if (options.camera.session.json) {
        Json result = {{"camera", place.cameraId}, {"module", options.camera.module}};
        if (toFile) {
            result.update({{"file", options.output}, {"bytes", text.size()}});
        } else {
            result["xml"] = text;
        }
        std::cout << JsonText(result) << '\n';
    } else if (!toFile) {
        std::cout << text;
    }
    return ExitCode::Ok;
}

}  // namespace

void AddXmlCommand(Command app, Invocation& invocation) {
    auto options = std::make_shared<XmlOptions>();
    Command command = app.AddCommand("xml", "Print the GenApi description of a camera");
    AddCameraArgument(command, options->camera.camera, false);
    command
        .AddOption("-m,--module", options->camera.module,
                   "Of camera (or device), local, interface, stream or system")
        .TypeName("MODULE")
        .OneOf({"camera", "device", "local", "interface", "stream", "system"})
        .ShowDefault();
    command
        .AddOption("-o,--output", options->output, "Write it to this file; -: to standard output")
        .TypeName("FILE");
    AddSessionOptions(command, options->camera.session);
    command.Footer(
        "Examples:\n"
        "  zelcam xml 1 -o camera.xml\n"
        "  zelcam xml 1 --module stream\n\n"
        "The text is the original one, unpacked where it is zipped.");
    Connect(command, invocation, options, RunXml);
}
