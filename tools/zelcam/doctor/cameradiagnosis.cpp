// The cameras: whether they answer, can be reached and opened, and keep answering.

#include <algorithm>

#include "tools/zelcam/camera/hostaddress.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/doctor/diagnosis.h"

namespace ZelTool {

namespace {

using Effect = Diagnosis::Effect;

constexpr uint64_t kShortHeartbeatMs = 1000;

std::string About(const CameraFacts& camera) {
    return "camera " + camera.id;
}

std::string AddressWords(const CameraFacts& camera) {
    return camera.address ? DottedAddress(*camera.address) : "its address";
}

Diagnosis CheckMissing(const Snapshot& snapshot) {
    if (!snapshot.choiceProblem.empty() && !snapshot.cameras.empty()) {
        return Found("cameras", "answer", Effect::NoCamera, snapshot.choiceProblem,
                     "take a name from `zelcam list`, or look after the camera's power and cable");
    }
    std::vector<std::string> names;
    for (const AdapterFacts& adapter : snapshot.adapters) {
        if (adapter.isSearched && adapter.isWired && adapter.hasLink) names.push_back(adapter.name);
    }
    if (names.empty()) {
        return Found("cameras", "answer", Effect::NoCamera, "no camera answers on any adapter",
                     "connect the camera to an adapter that is up and has an address");
    }
    return Found("cameras", "answer", Effect::NoCamera, "no camera answers on " + Joined(names),
                 "check the camera's power and wait some seconds; then let its answers pass the "
                 "firewall: " +
                     FirewallAdvice(snapshot, names.front(), 0));
}

Diagnosis CheckAccess(const CameraFacts& camera, bool hasUsbRule) {
    if (camera.isFree) return Fine(About(camera), "access", "free");
    if (!camera.forceCommand.empty()) {
        return Found(About(camera), "access", Effect::NoCamera,
                     camera.accessReason.empty()
                         ? AddressWords(camera) + " is in no network of its adapter"
                         : camera.accessReason,
                     camera.forceCommand);
    }
    if (camera.isUsb && camera.cannotBeReached) {
        return Found(About(camera), "access", Effect::NoCamera,
                     "this user may not open the USB device",
                     hasUsbRule ? "log in at the machine itself, as the udev rule of zelcam-tools "
                                  "lets only users open it who sit there"
                                : "install the package zelcam-tools for its udev rule, and plug "
                                  "the camera in again");
    }
    if (camera.cannotBeReached) {
        return Found(
            About(camera), "access", Effect::NoFrame,
            camera.accessReason.empty() ? "it is listed, but does not answer" : camera.accessReason,
            "switch the camera off and on again");
    }
    return Found(About(camera), "access", Effect::NoFrame,
                 camera.accessReason.empty() ? "another program has it open" : camera.accessReason,
                 "close that program; after a crash of it, wait some seconds until the camera "
                 "notices");
}

Diagnosis CheckRoute(const CameraFacts& camera) {
    if (camera.adapter.empty() || camera.routedThrough.empty()) {
        return NotKnown(About(camera), "route", "its adapter is not known");
    }
    if (camera.routedThrough == camera.adapter) {
        return Fine(About(camera), "route", AddressWords(camera) + " through " + camera.adapter);
    }
    return Found(About(camera), "route", Effect::NoFrame,
                 "it is on " + camera.adapter + ", but this machine sends to " +
                     AddressWords(camera) + " through " + camera.routedThrough,
                 "give " + camera.adapter + " and the camera addresses of a network of their own");
}

Diagnosis CheckHeartbeat(const CameraFacts& camera, const TrialFacts& trial) {
    if (!trial.heartbeatMs || *trial.heartbeatMs == 0) {
        return NotKnown(About(camera), "heartbeat", "the camera does not tell its time-out");
    }
    const std::string words = "time-out " + std::to_string(*trial.heartbeatMs) + " ms";
    if (*trial.heartbeatMs >= kShortHeartbeatMs) return Fine(About(camera), "heartbeat", words);
    // Another one that is set lasts until the camera is closed, and with control the default
    // producer has asked for three seconds already.
    return Found(About(camera), "heartbeat", Effect::Loss,
                 words + ": a pause of its program for so long loses the camera",
                 trial.controlFailure.empty() ? kFreeProcessor
                                              : "let the program that controls the camera set "
                                                "GevHeartbeatTimeout=3000");
}

// One in a hundred is no cause; fewer than a few are chance.
Diagnosis CheckCommands(const CameraFacts& camera, const TrialFacts& trial) {
    constexpr uint64_t kChance = 2;
    if (!trial.commands) {
        return NotKnown(About(camera), "commands", "the producer does not count them");
    }
    const CommandCounts& counts = *trial.commands;
    const std::string words = std::to_string(counts.repeated) + " of " +
                              std::to_string(counts.sent) + " repeated, " +
                              std::to_string(counts.unanswered) + " not answered";
    if (counts.unanswered == 0 &&
        (counts.repeated <= kChance || counts.repeated * 100 <= counts.sent)) {
        return Fine(About(camera), "commands", words);
    }
    return Found(About(camera), "commands", Effect::Loss,
                 words + ": the network loses packets, or the camera is slow",
                 "try another cable and another port of the switch");
}

void DiagnoseCamera(const Snapshot& snapshot, const CameraFacts& camera,
                    std::vector<Diagnosis>& all) {
    const std::optional<TrialFacts>& trial = snapshot.trial;
    all.push_back(CheckAccess(camera, snapshot.machine.hasUsbRule));
    const bool isOnNetwork = camera.isGigE && !camera.isSimulated;
    if (isOnNetwork && !camera.cannotBeReached) all.push_back(CheckRoute(camera));
    if (!trial) return;
    if (camera.isFree && !trial->controlFailure.empty()) {
        all.push_back(Found(About(camera), "open", Effect::NoFrame, trial->controlFailure,
                            "switch the camera off and on again"));
    }
    if (!isOnNetwork || !trial->isOpen) return;
    all.push_back(CheckHeartbeat(camera, *trial));
    all.push_back(CheckCommands(camera, *trial));
}

}  // namespace

std::vector<Diagnosis> DiagnoseCameras(const Snapshot& snapshot) {
    std::vector<Diagnosis> all;
    if (MissesCamera(snapshot)) all.push_back(CheckMissing(snapshot));
    const CameraFacts* const chosen = ChosenCamera(snapshot);
    for (const CameraFacts& camera : snapshot.cameras) {
        if (chosen == nullptr || chosen == &camera) DiagnoseCamera(snapshot, camera, all);
    }
    return all;
}

}  // namespace ZelTool
