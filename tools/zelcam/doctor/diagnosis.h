// What the facts of a snapshot mean, and what to do.
#pragma once

#include <string>
#include <vector>

#include "tools/zelcam/doctor/snapshot.h"

namespace ZelTool {

struct Diagnosis {
    enum class State { Fine, Found, Unknown };
    // What the user misses because of it, the worst first.
    enum class Effect { NoCamera, NoFrame, Loss };

    std::string about;  // "machine", "adapter eth1", "camera 4711", "stream"
    std::string check;
    State state;
    Effect effect;
    std::string detail;
    std::string advice;  // the one thing to do; empty unless something was found
};

std::string StateWords(Diagnosis::State state);
std::string EffectWords(Diagnosis::Effect effect);

// In the order in which things depend on each other: machine, adapters, cameras, stream.
std::vector<Diagnosis> Diagnose(const Snapshot& snapshot);

// The finding whose advice comes first: with the worst effect, and of these the first in the order
// above. Null when nothing was found.
const Diagnosis* FirstFinding(const std::vector<Diagnosis>& diagnoses);

// The parts of Diagnose.
std::vector<Diagnosis> DiagnoseMachine(const Snapshot& snapshot);
std::vector<Diagnosis> DiagnoseAdapters(const Snapshot& snapshot);
std::vector<Diagnosis> DiagnoseCameras(const Snapshot& snapshot);
std::vector<Diagnosis> DiagnoseStream(const Snapshot& snapshot);

// What several parts ask.

// Whether the camera that the user looks for is not there: the named one, or any.
bool MissesCamera(const Snapshot& snapshot);

// The chosen camera; null if none is.
const CameraFacts* ChosenCamera(const Snapshot& snapshot);

// The adapter of that name; null if there is none.
const AdapterFacts* FindAdapter(const Snapshot& snapshot, const std::string& name);

// Whether so many packets are missing that the network, or this machine, must be the cause.
bool HasGaps(const PacketCounts& packets);

// Whether the test stream came with gaps, or not at all.
bool IsStreamHurt(const Snapshot& snapshot);

// Whether the adapter threw packets away that the stream misses.
bool DropsOfStream(const Snapshot& snapshot, const AdapterFacts& adapter);

// Whether this machine threw packets away that had arrived.
bool DroppedHere(const Snapshot& snapshot);

// Lets what the cameras on that adapter send pass the firewall; `camera` 0: of all of them.
std::string FirewallAdvice(const Snapshot& snapshot, const std::string& adapter, uint32_t camera);

// More room for packets that a program has not read yet.
constexpr const char* kRaiseReceiveLimit =
    "sudo sysctl -w net.core.rmem_max=33554432; for good, copy "
    "/usr/share/doc/zelcam-tools/examples/60-zelcam-gige.conf to /etc/sysctl.d/";

// More time for the kernel and the program to receive.
constexpr const char* kFreeProcessor =
    "stop other programs, or give the camera's program a processor of its own (taskset)";

// One line each.
inline Diagnosis Fine(const std::string& about, const std::string& check,
                      const std::string& detail) {
    return {about, check, Diagnosis::State::Fine, Diagnosis::Effect::Loss, detail, ""};
}
inline Diagnosis NotKnown(const std::string& about, const std::string& check,
                          const std::string& detail) {
    return {about, check, Diagnosis::State::Unknown, Diagnosis::Effect::Loss, detail, ""};
}
inline Diagnosis Found(const std::string& about, const std::string& check, Diagnosis::Effect effect,
                       const std::string& detail, const std::string& advice) {
    return {about, check, Diagnosis::State::Found, effect, detail, advice};
}

}  // namespace ZelTool
