// The network adapters: those of the chosen camera, or all that may have cameras.

#include <algorithm>

#include "tools/zelcam/camera/hostaddress.h"
#include "tools/zelcam/doctor/diagnosis.h"

namespace ZelTool {

namespace {

using Effect = Diagnosis::Effect;

std::string About(const AdapterFacts& adapter) {
    return "adapter " + adapter.name;
}

bool HasCamera(const Snapshot& snapshot, const AdapterFacts& adapter) {
    return std::any_of(snapshot.cameras.begin(), snapshot.cameras.end(),
                       [&](const CameraFacts& camera) {
                           return !camera.isSimulated && camera.adapter == adapter.name;
                       });
}

bool IsAsked(const Snapshot& snapshot, const AdapterFacts& adapter) {
    const CameraFacts* const camera = ChosenCamera(snapshot);
    if (camera != nullptr) return !camera->isSimulated && camera->adapter == adapter.name;
    return adapter.isWired || HasCamera(snapshot, adapter);
}

// Something keeps cameras from being found on this adapter. That counts only when one is missed:
// most machines have adapters that nobody uses.
Diagnosis Obstacle(const Snapshot& snapshot, const AdapterFacts& adapter, const std::string& check,
                   const std::string& detail, const std::string& advice) {
    if (!MissesCamera(snapshot)) {
        return Fine(About(adapter), check, detail + ", and the camera is elsewhere");
    }
    return Found(About(adapter), check, Effect::NoCamera, detail, advice);
}

Diagnosis CheckLink(const Snapshot& snapshot, const AdapterFacts& adapter) {
    if (!adapter.isUp) {
        return Obstacle(snapshot, adapter, "link", "is down",
                        "sudo ip link set " + adapter.name + " up");
    }
    if (!adapter.hasLink) {
        return Obstacle(snapshot, adapter, "link", "nothing is at the other end of its cable",
                        "plug the cable in, and check that the camera has power");
    }
    return Fine(About(adapter), "link", "is up");
}

Diagnosis CheckAddress(const Snapshot& snapshot, const AdapterFacts& adapter) {
    if (adapter.subnets.empty()) {
        return Obstacle(snapshot, adapter, "address", "has no IPv4 address",
                        "sudo ip address add 169.254.0.1/16 dev " + adapter.name);
    }
    std::string addresses;
    for (const Subnet& subnet : adapter.subnets) {
        addresses += (addresses.empty() ? "" : ", ") + DottedAddress(subnet.address) + " mask " +
                     DottedAddress(subnet.mask);
    }
    return Fine(About(adapter), "address", addresses);
}

bool Overlap(const Subnet& one, const Subnet& other) {
    const uint32_t mask = one.mask & other.mask;
    return (one.address & mask) == (other.address & mask);
}

bool SharesSubnet(const AdapterFacts& one, const AdapterFacts& other) {
    return std::any_of(one.subnets.begin(), one.subnets.end(), [&](const Subnet& subnet) {
        return std::any_of(other.subnets.begin(), other.subnets.end(),
                           [&](const Subnet& its) { return Overlap(subnet, its); });
    });
}

// A camera is missed on either of two adapters; frames are missed where answers go the other way.
Diagnosis CheckSubnets(const Snapshot& snapshot, const AdapterFacts& adapter) {
    const CameraFacts* const camera = ChosenCamera(snapshot);
    const bool isElsewhere = camera != nullptr && camera->routedThrough == adapter.name;
    for (const AdapterFacts& other : snapshot.adapters) {
        if (other.name == adapter.name || !other.isUp || !SharesSubnet(adapter, other)) continue;
        const std::string detail = "is in the same network as " + other.name +
                                   ", and the kernel sends through one of them only";
        if (isElsewhere || (camera == nullptr && !MissesCamera(snapshot))) {
            return Fine(About(adapter), "network", detail);
        }
        return Found(About(adapter), "network",
                     MissesCamera(snapshot) ? Effect::NoCamera : Effect::NoFrame, detail,
                     "give " + adapter.name + " and its cameras addresses of another network");
    }
    return Fine(About(adapter), "network", "no other adapter is in it");
}

Diagnosis CheckMtu(const Snapshot& snapshot, const AdapterFacts& adapter) {
    const std::string mtu = std::to_string(adapter.mtu);
    if (!snapshot.trial || !snapshot.trial->ownPacketSize) {
        return Fine(About(adapter), "MTU", mtu);
    }
    const uint64_t size = *snapshot.trial->ownPacketSize;
    const std::string words = std::to_string(size);
    if (size <= adapter.mtu) {
        return Fine(About(adapter), "MTU", mtu + ", and the camera's packets have " + words);
    }
    return Found(About(adapter), "MTU", Effect::NoFrame,
                 mtu + " is less than the camera's packet size, " + words,
                 "sudo ip link set " + adapter.name + " mtu " + words);
}

Diagnosis CheckDrops(const Snapshot& snapshot, const AdapterFacts& adapter) {
    const AdapterDrops& before = adapter.drops;
    const AdapterDrops& now = adapter.dropsMeanwhile;
    const bool isFull = now.missed + now.overruns > 0;
    if (!isFull && !DropsOfStream(snapshot, adapter)) {
        return Fine(About(adapter), "drops",
                    "none now; since the adapter exists " +
                        std::to_string(before.missed + before.overruns) +
                        " because its ring was full, and " + std::to_string(before.dropped) +
                        " others");
    }
    std::string detail = std::to_string(now.missed + now.overruns) +
                         " packets dropped because its ring was full, and " +
                         std::to_string(now.dropped) + " others";
    std::string advice =
        isFull ? kFreeProcessor : "look which ones: ip -s -s link show " + adapter.name;
    if (adapter.ring) {
        detail += "; the ring holds " + std::to_string(adapter.ring->size) + " of at most " +
                  std::to_string(adapter.ring->largest);
        if (adapter.ring->size < adapter.ring->largest) {
            advice =
                "sudo ethtool -G " + adapter.name + " rx " + std::to_string(adapter.ring->largest);
        }
    }
    return Found(About(adapter), "drops", Effect::Loss, detail, advice);
}

void CheckAdapter(const Snapshot& snapshot, const AdapterFacts& adapter,
                  std::vector<Diagnosis>& all) {
    all.push_back(CheckLink(snapshot, adapter));
    if (!adapter.isUp) return;
    all.push_back(CheckAddress(snapshot, adapter));
    if (adapter.subnets.empty()) return;
    if (!adapter.isSearched && !snapshot.machine.searchedInterfaces.empty()) {
        all.push_back(
            Obstacle(snapshot, adapter, "search",
                     "ZELGEV_INTERFACES=" + snapshot.machine.searchedInterfaces + " leaves it out",
                     "unset ZELGEV_INTERFACES, or add " + adapter.name));
    }
    all.push_back(CheckSubnets(snapshot, adapter));
    all.push_back(CheckMtu(snapshot, adapter));
    all.push_back(CheckDrops(snapshot, adapter));
}

}  // namespace

std::vector<Diagnosis> DiagnoseAdapters(const Snapshot& snapshot) {
    std::vector<Diagnosis> all;
    for (const AdapterFacts& adapter : snapshot.adapters) {
        if (IsAsked(snapshot, adapter)) CheckAdapter(snapshot, adapter, all);
    }
    const CameraFacts* const camera = ChosenCamera(snapshot);
    const bool mayHaveAny = camera == nullptr || (camera->isGigE && !camera->isSimulated);
    if (!all.empty() || !mayHaveAny || snapshot.asksForSimulated) return all;
    if (camera == nullptr && MissesCamera(snapshot)) {
        return {Found("adapters", "adapters", Effect::NoCamera,
                      "this machine has no wired network adapter",
                      "check that the adapter is plugged in and its driver is loaded: ip link")};
    }
    return {NotKnown("adapters", "adapters", "none belongs to the camera")};
}

}  // namespace ZelTool
