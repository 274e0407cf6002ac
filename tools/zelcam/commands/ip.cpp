// zelcam ip: shows and forces the network configuration of a GigE Vision camera.

#include <iostream>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/reachability.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

constexpr const char* kProposed = "auto";  // in place of an address

struct IpOptions : CameraOptions {
    Network network{"", "", "0.0.0.0"};
    bool force = false;
};

const Camera& SelectGigE(const Session& session, const std::string& wanted) {
    const Camera& camera = SelectCamera(session, wanted);
    if (camera.interfaceType != ZelCam::InterfaceType::GEV) {
        throw Failure(ExitCode::Usage, "camera " + Printable(camera.id) +
                                           " has no network address: it is a " +
                                           InterfaceTypeWords(camera.interfaceType) + " camera");
    }
    return camera;
}

void PrintNetworkAsJson(const Camera& camera, const Network& network) {
    PrintJson({{"camera", camera.id},
               {"address", network.address},
               {"mask", network.mask},
               {"gateway", network.gateway}});
}

ExitCode RunShow(const IpOptions& options) {
    const Session session(options, EnoughToSelect({options.camera}));
    const Camera& camera = SelectGigE(session, options.camera);
    const Network network = NetworkOf(*camera.info);
    if (options.json) {
        PrintNetworkAsJson(camera, network);
    } else {
        std::cout << "Address  " << Printable(network.address) << "\nMask     "
                  << Printable(network.mask) << "\nGateway  " << Printable(network.gateway) << '\n';
    }
    return ExitCode::Ok;
}

ExitCode RunForce(const IpOptions& options) {
    const bool proposed = options.network.address == kProposed;
    if (!proposed && options.network.mask.empty()) {
        throw Failure(ExitCode::Usage, "name the mask of the network as well");
    }
    if (!proposed) CheckNetwork(options.network, options.force);
    const Session session(options, EnoughToSelect({options.camera}));
    const Camera& camera = SelectGigE(session, options.camera);
    const Network network = proposed ? ProposedNetwork(camera) : options.network;
    const ZelCamErr code = camera.info->ForceIP(network.address.c_str(), network.mask.c_str(),
                                                network.gateway.c_str());
    RequireSuccess(code, "the address cannot be forced");
    if (options.json) PrintNetworkAsJson(camera, network);
    return ExitCode::Ok;
}

AddedCommand<IpOptions> AddAction(Command parent, Invocation& invocation, const char* name,
                                  const char* what, ExitCode (*run)(const IpOptions&)) {
    AddedCommand<IpOptions> added = AddCommand(parent, invocation, name, what, run);
    AddCameraArgument(added.command, added.options.camera, true);
    AddSessionOptions(added.command, added.options);
    return added;
}

}  // namespace

void AddIpCommand(Command app, Invocation& invocation) {
    Command command =
        app.AddCommand("ip", "Show or force the network address of a GigE Vision camera");
    // The commands inside this one take over its footer.
    command.Footer(
        "Examples:\n"
        "  zelcam ip show 1\n"
        "  zelcam ip force 4711 auto\n"
        "  zelcam ip force 4711 192.168.0.10 255.255.255.0\n\n"
        "A camera whose address does not belong to the network of its adapter is listed but cannot "
        "be opened: force an address in that network, then set a persistent one.");
    AddAction(command, invocation, "show", "Print address, mask and gateway", RunShow);
    auto [force, options] =
        AddAction(command, invocation, "force",
                  "Give the camera an address until it is switched off", RunForce);
    Network& network = options.network;
    force
        .AddOption("address", "ADDRESS", network.address,
                   "The new address, with dots; auto: a free one in the network of the adapter")
        .Required();
    force.AddOption("mask", "MASK", network.mask, "The mask of its network, except for auto");
    force.AddOption("gateway", "GATEWAY", network.gateway, "The gateway; 0.0.0.0: none");
    force.AddFlag("--force", options.force, "Accept any address, mask and gateway");
}

}  // namespace ZelTool
