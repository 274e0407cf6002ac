// zelcam list: producers, interfaces and cameras, and advice when no camera is found.

#include <cstdlib>
#include <iostream>
#include <map>
#include <set>
#include <unistd.h>
#include <utility>

#include "tools/zelcam/camera/listing.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/texttable.h"

namespace ZelTool {

namespace {

struct ListOptions : SessionOptions {
    bool names = false;
};

std::string DefaultProducerAdvice(const Producer& standard) {
    if (standard.reason.find("ZELSIM=") != std::string::npos) {
        return "set ZELSIM to 1 for the built-in simulated cameras, or unset it to do without";
    }
    const std::string configuration = TextOrEmpty(std::getenv("ZELSIM_CONFIG"));
    if (!configuration.empty() && standard.reason.find(configuration) != std::string::npos) {
        return "the configuration of the simulated cameras is not valid: correct the file, or "
               "unset ZELSIM_CONFIG";
    }
    return "the library needs its default producer: put a working libZelCTI.cti beside the "
           "library, or name its folder in LD_LIBRARY_PATH";
}

// For a default producer without a network adapter.
std::string NoAdapterAdvice() {
    const std::string wanted = TextOrEmpty(std::getenv("ZELGEV_INTERFACES"));
    if (wanted.empty()) return "GigE Vision: no network adapter is up; `ip link` lists them";
    return "GigE Vision: ZELGEV_INTERFACES=" + wanted +
           " restricts the search; unset it to search on every network adapter";
}

// Advice for a user who has no real camera, depending on the interfaces.
std::vector<std::string> WhatToCheck(const Session& session) {
    if (!session.HasInterfaceList()) return {DefaultProducerAdvice(session.Producers().front())};
    if (session.AsksForSimulated()) {
        return {
            "no loaded producer has simulated cameras: check the file in ZELSIM_CONFIG, "
            "LD_LIBRARY_PATH (another default producer?) and --only"};
    }
    std::set<ZelCam::InterfaceType> types;
    for (const InterfaceEntry& entry : session.Interfaces()) {
        if (!entry.simulated) types.insert(entry.type);
    }
    if (types.empty() && !session.HasRealProducer()) {
        return {
            NoAdapterAdvice(),
            "a camera that is no GigE Vision camera needs a producer: name the .cti file of the "
            "camera's maker with --producer, or its folder in GENICAM_GENTL64_PATH"};
    }
    std::vector<std::string> checks = {
        "is the camera connected and powered? give it some seconds to start"};
    if (types.empty()) {
        checks.emplace_back(
            "the producers have no interface: is the adapter or frame grabber present?");
    }
    if (types.count(ZelCam::InterfaceType::GEV) != 0) {
        checks.emplace_back(
            "GigE Vision: `zelcam doctor` looks at adapters and addresses; does a firewall block "
            "UDP port 3956?");
    }
    if (types.count(ZelCam::InterfaceType::U3V) != 0) {
        checks.emplace_back(
            "USB3 Vision: does `lsusb` show the camera? may this user open it (udev rules, "
            "groups)?");
    }
    checks.emplace_back(
        "does the camera need another producer? name its file with --producer, or its folder in "
        "GENICAM_GENTL64_PATH");
    checks.emplace_back("does the search need more time? try --search 5000");
    return checks;
}

void PrintText(const Session& session) {
    const size_t width = TerminalWidth(STDOUT_FILENO);
    PrintSession(std::cout, session, width);
    const auto& cameras = session.Cameras();
    // Real ones come first.
    if (!cameras.empty() && (!cameras.front().simulated || session.AsksForSimulated())) return;
    std::cout << (cameras.empty() ? "\nNo camera was found." : "\nNo real camera was found.")
              << " What to check:\n";
    std::vector<std::string> checks = WhatToCheck(session);
    if (session.CouldAskForSimulated()) {
        checks.emplace_back(
            "no camera at hand? every command works with simulated cameras: `zelcam list "
            "--simulated`; other programs find them with ZELSIM=1 in their environment");
    }
    for (const std::string& check : checks)
        PrintIndented(std::cout, "- " + check, width);
}

// Prints all names that choose a camera, for completion in the shell.
void PrintNames(const Session& session) {
    std::map<std::string, int> uses;
    std::vector<std::pair<std::string, const Camera*>> names;
    for (const Camera& camera : session.Cameras()) {
        std::set<std::string> own;
        for (const std::string& name : {camera.id, camera.serial, camera.userName}) {
            if (name.empty() || Printable(name) != name || !own.insert(name).second) continue;
            names.emplace_back(name, &camera);
            ++uses[name];
        }
    }
    for (const auto& [name, camera] : names)
        std::cout << (uses[name] > 1 ? camera->producerName + "/" : "") << name << '\n';
}

ExitCode RunList(const ListOptions& options) {
    // Who waits for a completion wants it now.
    const auto now = [](const Session&) { return true; };
    const Session session(options, options.names ? now : Session::Enough());
    if (options.names) {
        PrintNames(session);
    } else if (options.json) {
        PrintJson(SessionAsJson(session));
    } else {
        PrintText(session);
    }
    if (!session.HasInterfaceList()) return ExitCode::NoProducer;
    return session.Cameras().empty() ? ExitCode::NoCamera : ExitCode::Ok;
}

}  // namespace

void AddListCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "list", "List producers, interfaces and cameras", RunList);
    AddSessionOptions(command, options);
    command.AddFlag("--names", options.names, "Print only names, for completion").Hide();
    command.Footer(
        "Examples:\n"
        "  zelcam list\n"
        "  zelcam list --producer /opt/vendor/lib/vendor.cti\n"
        "  zelcam list --json\n\n"
        "A producer or interface that fails is listed with the reason. The others still work.");
}

}  // namespace ZelTool
