// The test stream: whether frames came, and where packets went.

#include <algorithm>

#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/doctor/diagnosis.h"

namespace ZelTool {

namespace {

using Effect = Diagnosis::Effect;

constexpr const char* kStream = "stream";

// What a camera sends in 20 ms over 1 Gbit/s, and no more than a stream ever asks for. A packet
// takes about twice its size.
uint64_t NeededBuffer(uint64_t frameSize) {
    constexpr uint64_t kLeast = 2500000;
    constexpr uint64_t kMost = 32 << 20;
    return std::min(2 * std::max(kLeast, 2 * frameSize), kMost);
}

bool WaitsForTrigger(const TrialFacts& trial) {
    return std::any_of(trial.silence.begin(), trial.silence.end(), [](const Check& check) {
        return !check.good && check.finding.find("TriggerMode is On") != std::string::npos;
    });
}

Diagnosis CheckFrameCount(const TrialFacts& trial) {
    const std::string words = std::to_string(trial.frames) + " came, " +
                              std::to_string(trial.incomplete) + " of them incomplete";
    if (trial.frames == 0) {
        // Other lines say why, or that nobody knows.
        return NotKnown(kStream, "frames", "none came in time");
    }
    if (trial.underruns > 0) {
        return Found(
            kStream, "frames", Effect::Loss,
            words + ", and for " + std::to_string(trial.underruns) + " more no buffer was free",
            "queue more buffers in your program, as this test does: zelcam grab -b 32");
    }
    return Fine(kStream, "frames", words);
}

void CheckSilence(const TrialFacts& trial, std::vector<Diagnosis>& all) {
    for (const Check& check : trial.silence) {
        if (check.good || check.advice.empty()) continue;
        all.push_back(Found(kStream, "settings", Effect::NoFrame, check.finding, check.advice));
    }
}

Diagnosis CheckFirewall(const Snapshot& snapshot, const CameraFacts& camera,
                        const TrialFacts& trial) {
    constexpr const char* kName = "firewall";
    const AdapterFacts* const adapter = FindAdapter(snapshot, camera.adapter);
    const bool packetsCame = trial.packets && trial.packets->seen > 0;
    if (packetsCame || trial.frames > 0 || trial.testPacketArrived.value_or(false)) {
        return Fine(kStream, kName, "packets of the camera pass");
    }
    if (!trial.testPacketArrived || !trial.packets) {
        return NotKnown(kStream, kName, "no test packet could be asked for");
    }
    if (WaitsForTrigger(trial)) {
        return NotKnown(kStream, kName, "no test packet came, and the camera waits for a trigger");
    }
    if (adapter != nullptr && trial.ownPacketSize.value_or(0) > adapter->mtu) {
        return NotKnown(kStream, kName, "packets are too large for the adapter");
    }
    return Found(kStream, kName, Effect::NoFrame,
                 "the camera answers, but none of its packets arrives, and no test packet",
                 FirewallAdvice(snapshot, camera.adapter, camera.address.value_or(0)));
}

// Sizes of packets are rounded by cameras, by the search too.
Diagnosis CheckPath(const Snapshot& snapshot, const CameraFacts& camera, const TrialFacts& trial) {
    constexpr const char* kName = "path MTU";
    constexpr uint64_t kRounding = 64;
    const AdapterFacts* const adapter = FindAdapter(snapshot, camera.adapter);
    if (adapter == nullptr || !trial.passingPacketSize) {
        return NotKnown(kStream, kName, "no test packet arrived");
    }
    const uint64_t passing = *trial.passingPacketSize;
    const uint64_t possible =
        std::min<uint64_t>(adapter->mtu, trial.largestPacketSize.value_or(passing));
    const std::string words = "packets of " + std::to_string(passing) + " bytes pass";
    if (passing + kRounding >= possible) return Fine(kStream, kName, words);
    return Found(kStream, kName, Effect::Loss,
                 words + ", but none of " + std::to_string(possible) +
                     ", which adapter and camera both allow",
                 "switch jumbo frames on in the switch between adapter and camera");
}

Diagnosis CheckReceiveBuffer(const TrialFacts& trial) {
    constexpr const char* kName = "receive buffer";
    if (!trial.receiveBuffer) return NotKnown(kStream, kName, "the producer does not tell it");
    const uint64_t needed = NeededBuffer(trial.frameSize);
    const std::string words = std::to_string(*trial.receiveBuffer) + " bytes";
    if (*trial.receiveBuffer >= needed) return Fine(kStream, kName, words);
    return Found(kStream, kName, Effect::Loss,
                 words + ", but frames of this size want " + std::to_string(needed),
                 kRaiseReceiveLimit);
}

Diagnosis CheckPackets(const Snapshot& snapshot, const CameraFacts& camera,
                       const TrialFacts& trial) {
    constexpr const char* kName = "packets";
    if (!trial.packets) return NotKnown(kStream, kName, "the producer does not count them");
    const PacketCounts& counts = *trial.packets;
    const std::string words = std::to_string(counts.seen) + " came, " +
                              std::to_string(counts.askedAgain) + " had to be asked for again, " +
                              std::to_string(counts.lost) + " are lost, " +
                              std::to_string(counts.socketDrops) + " were dropped by this machine";
    if (counts.socketDrops > 0) {
        const bool hadRoom = trial.receiveBuffer.value_or(0) >= NeededBuffer(trial.frameSize);
        return Found(kStream, kName, Effect::Loss,
                     words + ": the receiving thread did not get the processor in time",
                     hadRoom ? kFreeProcessor : kRaiseReceiveLimit);
    }
    if (HasGaps(counts)) {
        if (DroppedHere(snapshot)) return Fine(kStream, kName, words + ", see above");
        return Found(kStream, kName, Effect::Loss, words + ": the network loses packets",
                     "try another cable and another port of the switch; with several cameras on a "
                     "link, raise GevSCPD of each: zelcam set " +
                         camera.id + " GevSCPD=1000");
    }
    return Fine(kStream, kName, words);
}

}  // namespace

std::vector<Diagnosis> DiagnoseStream(const Snapshot& snapshot) {
    const CameraFacts* const camera = ChosenCamera(snapshot);
    if (camera == nullptr || !snapshot.trial || !snapshot.trial->isOpen) return {};
    const TrialFacts& trial = *snapshot.trial;
    if (!trial.controlFailure.empty()) {
        return {NotKnown(kStream, "frames", "the camera is open read-only, and was not started")};
    }
    if (!trial.streamFailure.empty()) {
        return {Found(kStream, "acquisition", Effect::NoFrame, trial.streamFailure,
                      "switch the camera off and on again")};
    }
    std::vector<Diagnosis> all = {CheckFrameCount(trial)};
    CheckSilence(trial, all);
    const bool isOnNetwork = camera->isGigE && !camera->isSimulated;
    if (!isOnNetwork) return all;
    all.push_back(CheckFirewall(snapshot, *camera, trial));
    all.push_back(CheckPath(snapshot, *camera, trial));
    all.push_back(CheckReceiveBuffer(trial));
    all.push_back(CheckPackets(snapshot, *camera, trial));
    return all;
}

}  // namespace ZelTool
