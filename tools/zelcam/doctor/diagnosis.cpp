#include "tools/zelcam/doctor/diagnosis.h"

#include <algorithm>

#include "tools/zelcam/camera/hostaddress.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

constexpr Word<Diagnosis::State> kStates[] = {{Diagnosis::State::Fine, "ok"},
                                              {Diagnosis::State::Found, "FOUND"},
                                              {Diagnosis::State::Unknown, "not known"}};

constexpr Word<Diagnosis::Effect> kEffects[] = {{Diagnosis::Effect::NoCamera, "no camera"},
                                                {Diagnosis::Effect::NoFrame, "no frame"},
                                                {Diagnosis::Effect::Loss, "loss"}};

}  // namespace

std::string StateWords(Diagnosis::State state) {
    return WordsFor(state, kStates, "");
}

std::string EffectWords(Diagnosis::Effect effect) {
    return WordsFor(effect, kEffects, "");
}

std::vector<Diagnosis> Diagnose(const Snapshot& snapshot) {
    std::vector<Diagnosis> all;
    for (auto* part : {DiagnoseMachine, DiagnoseAdapters, DiagnoseCameras, DiagnoseStream}) {
        std::vector<Diagnosis> some = part(snapshot);
        std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    return all;
}

const Diagnosis* FirstFinding(const std::vector<Diagnosis>& diagnoses) {
    const Diagnosis* first = nullptr;
    for (const Diagnosis& each : diagnoses) {
        if (each.state != Diagnosis::State::Found) continue;
        if (first == nullptr || each.effect < first->effect) first = &each;
    }
    return first;
}

bool MissesCamera(const Snapshot& snapshot) {
    if (!snapshot.wanted.empty()) return !snapshot.chosen;
    return std::none_of(snapshot.cameras.begin(), snapshot.cameras.end(),
                        [&](const CameraFacts& camera) {
                            return !camera.isSimulated || snapshot.asksForSimulated;
                        });
}

const CameraFacts* ChosenCamera(const Snapshot& snapshot) {
    return snapshot.chosen ? &snapshot.cameras[*snapshot.chosen] : nullptr;
}

const AdapterFacts* FindAdapter(const Snapshot& snapshot, const std::string& name) {
    const auto found =
        std::find_if(snapshot.adapters.begin(), snapshot.adapters.end(),
                     [&](const AdapterFacts& adapter) { return adapter.name == name; });
    return found != snapshot.adapters.end() ? &*found : nullptr;
}

// Some packets are only slow on a busy machine, and a few in a thousand harm nobody.
bool HasGaps(const PacketCounts& packets) {
    constexpr uint64_t kHarmless = 500;
    if (packets.lost > 0 || packets.unavailable > 0) return true;
    return packets.askedAgain > packets.needless &&
           (packets.askedAgain - packets.needless) * kHarmless > packets.seen;
}

bool IsStreamHurt(const Snapshot& snapshot) {
    if (!snapshot.trial || !snapshot.trial->streamFailure.empty()) return false;
    const TrialFacts& trial = *snapshot.trial;
    if (trial.frames == 0 || trial.incomplete > 0) return true;
    return trial.packets && HasGaps(*trial.packets);
}

bool DropsOfStream(const Snapshot& snapshot, const AdapterFacts& adapter) {
    const CameraFacts* const camera = ChosenCamera(snapshot);
    const AdapterDrops& drops = adapter.dropsMeanwhile;
    return camera != nullptr && camera->adapter == adapter.name && IsStreamHurt(snapshot) &&
           drops.dropped + drops.missed + drops.overruns > 0;
}

bool DroppedHere(const Snapshot& snapshot) {
    const std::optional<TrialFacts>& trial = snapshot.trial;
    if (trial && trial->packets && trial->packets->socketDrops > 0) return true;
    if (IsStreamHurt(snapshot) && snapshot.machine.meanwhile.backlogDrops > 0) return true;
    return std::any_of(
        snapshot.adapters.begin(), snapshot.adapters.end(),
        [&](const AdapterFacts& adapter) { return DropsOfStream(snapshot, adapter); });
}

std::string FirewallAdvice(const Snapshot& snapshot, const std::string& adapter, uint32_t camera) {
    const std::string address = camera != 0 ? DottedAddress(camera) : "";
    if (snapshot.machine.usesUfw) {
        return "sudo ufw prepend allow in on " + adapter + " proto udp from " +
               (address.empty() ? "any port 3956" : address);
    }
    return "sudo nft insert rule inet filter input iifname " + adapter +
           (address.empty() ? " udp sport 3956" : " ip saddr " + address + " meta l4proto udp") +
           " accept";
}

}  // namespace ZelTool
