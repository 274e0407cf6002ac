// The machine: producers, memory for packets, processors, filters.

#include <cmath>

#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/doctor/diagnosis.h"

namespace ZelTool {

namespace {

using Effect = Diagnosis::Effect;

constexpr const char* kMachine = "machine";

// 20 ms of a full 1 Gbit/s link. The kernel grants twice the limit, as a packet takes about twice
// its size.
constexpr uint64_t kEnoughLimit = 2500000;

Diagnosis CheckProducer(const Snapshot& snapshot) {
    const MachineFacts& machine = snapshot.machine;
    if (machine.producerProblem.empty()) {
        return Fine(kMachine, "producers", "the default producer is loaded");
    }
    if (!machine.searchedInterfaces.empty()) {
        return Found(kMachine, "producers", Effect::NoCamera,
                     "ZELGEV_INTERFACES=" + machine.searchedInterfaces +
                         " leaves out every adapter of this machine",
                     "unset ZELGEV_INTERFACES");
    }
    return Found(kMachine, "producers", Effect::NoCamera, machine.producerProblem,
                 "put a working libZelCTI.cti beside the library, or name its folder in "
                 "LD_LIBRARY_PATH");
}

Diagnosis CheckReceiveLimit(const MachineFacts& machine) {
    constexpr const char* kName = "receive buffers";
    if (!machine.receiveLimit) return NotKnown(kMachine, kName, "net.core.rmem_max is not there");
    const std::string limit = std::to_string(*machine.receiveLimit);
    if (machine.exceedsLimit) {
        return Fine(kMachine, kName, "this user may exceed net.core.rmem_max = " + limit);
    }
    if (*machine.receiveLimit >= kEnoughLimit) {
        return Fine(kMachine, kName, "net.core.rmem_max = " + limit);
    }
    return Found(kMachine, kName, Effect::Loss,
                 "net.core.rmem_max = " + limit +
                     " is too little for packets that a busy program has not read yet",
                 kRaiseReceiveLimit);
}

// A slow or busy processor is normal, and a cause only where packets were dropped.
Diagnosis CheckProcessors(const Snapshot& snapshot) {
    constexpr const char* kName = "processors";
    const MachineFacts& machine = snapshot.machine;
    const std::string governors = Joined(machine.governors);
    const auto tenths = static_cast<uint64_t>(std::llround(machine.load * 10));
    const std::string state = (governors.empty() ? "" : "frequency governor " + governors + ", ") +
                              "load " + std::to_string(tenths / 10) + "." +
                              std::to_string(tenths % 10) + " on " +
                              std::to_string(machine.processors) + " processors";
    if (!DroppedHere(snapshot)) return Fine(kMachine, kName, state);
    if (machine.load > machine.processors) {
        return Found(kMachine, kName, Effect::Loss,
                     "packets were dropped while other programs had the processors: " + state,
                     kFreeProcessor);
    }
    if (!governors.empty() && governors != "performance") {
        return Found(kMachine, kName, Effect::Loss,
                     "packets were dropped while processors may have slept: " + state,
                     "sudo cpupower frequency-set -g performance");
    }
    return Fine(kMachine, kName, state);
}

Diagnosis CheckBacklog(const Snapshot& snapshot) {
    constexpr const char* kName = "kernel queues";
    const KernelCounts& counts = snapshot.machine.meanwhile;
    const std::string words = std::to_string(counts.backlogDrops) + " packets dropped, " +
                              std::to_string(counts.squeezes) + " times out of time";
    if (counts.backlogDrops == 0 || !IsStreamHurt(snapshot)) {
        return Fine(kMachine, kName, words);
    }
    return Found(kMachine, kName, Effect::Loss, words,
                 "sudo sysctl -w net.core.netdev_max_backlog=10000");
}

// Adapters on which the filter is on and a camera may be.
std::vector<std::string> FilteringAdapters(const Snapshot& snapshot) {
    std::vector<std::string> names;
    for (const AdapterFacts& adapter : snapshot.adapters) {
        if (adapter.reversePathFilter != 0 && !adapter.isLoopback && adapter.isUp) {
            names.push_back(adapter.name);
        }
    }
    return names;
}

Diagnosis CheckReversePathFilter(const Snapshot& snapshot) {
    constexpr const char* kName = "reverse-path filter";
    const uint64_t drops = snapshot.machine.meanwhile.reversePathDrops;
    if (drops == 0) return Fine(kMachine, kName, "dropped nothing");
    const std::string words = std::to_string(drops) +
                              " packets dropped, as this machine sends to their senders another "
                              "way";
    const bool frameIsMissing = snapshot.trial && snapshot.trial->frames == 0;
    if (!MissesCamera(snapshot) && !frameIsMissing) return Fine(kMachine, kName, words);
    std::string advice = "sudo sysctl -w net.ipv4.conf.all.rp_filter=0";
    for (const std::string& name : FilteringAdapters(snapshot))
        advice += " net.ipv4.conf." + name + ".rp_filter=0";
    return Found(kMachine, kName, MissesCamera(snapshot) ? Effect::NoCamera : Effect::NoFrame,
                 words, advice);
}

}  // namespace

std::vector<Diagnosis> DiagnoseMachine(const Snapshot& snapshot) {
    const CameraFacts* const camera = ChosenCamera(snapshot);
    std::vector<Diagnosis> all;
    if (camera == nullptr) all.push_back(CheckProducer(snapshot));
    if (snapshot.asksForSimulated) return all;
    if (camera != nullptr && (camera->isSimulated || !camera->isGigE)) return all;
    // A stream shows better what it got.
    if (!snapshot.trial || !snapshot.trial->receiveBuffer) {
        all.push_back(CheckReceiveLimit(snapshot.machine));
    }
    all.push_back(CheckProcessors(snapshot));
    all.push_back(CheckBacklog(snapshot));
    all.push_back(CheckReversePathFilter(snapshot));
    return all;
}

}  // namespace ZelTool
