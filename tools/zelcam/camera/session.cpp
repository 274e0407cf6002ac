#include "tools/zelcam/camera/session.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/camera/producerfile.h"
#include "tools/zelcam/camera/producerlist.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/progress.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

using Origin = Producer::Origin;
using State = Producer::State;

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr Word<Origin> kOrigins[] = {
    {Origin::Default, "default"},
    {Origin::Option, "--producer"},
    {Origin::Environment, "GENICAM_GENTL64_PATH"},
    {Origin::Only, "--only"},
};

constexpr Word<State> kStates[] = {
    {State::Loaded, "loaded"}, {State::Failed, "failed"}, {State::Skipped, "skipped"}};

// Makes the default producer list simulated cameras, which it does only if the environment asks for
// them. The user's own file takes precedence over the built-in cameras.
void AskForSimulatedCameras() {
    if (TextOrEmpty(std::getenv("ZELSIM_CONFIG")).empty()) setenv("ZELSIM", "1", 1);
}

// Registers a producer, and notes a failure in it.
void Register(ZelCam::System& system, Producer& producer) {
    const ZelCamErr code = system.RegisterGenTLProvider(producer.file.c_str());
    if (code != ZelCamErr_Success) producer.Fail("the library cannot use it: " + ErrorWords(code));
}

// Lets the interface search for cameras. Returns what went wrong; empty on success.
std::string WhyNotSearched(ZelCam::Interface& interface, milliseconds time) {
    try {
        const auto timeMs = static_cast<uint64_t>(time.count());
        const ZelCamErr code = interface.ReEnumerateDevices(nullptr, timeMs);
        return code == ZelCamErr_Success ? ""
                                         : "the search for cameras failed: " + ErrorWords(code);
    } catch (const std::system_error& error) {
        return std::string("the cameras cannot be listed: ") + error.what();
    }
}

bool IsOnNetwork(const InterfaceEntry& entry) {
    return entry.type == ZelCam::InterfaceType::GEV && !entry.simulated;
}

// Whether no camera outside this machine can be there: programs answer at once.
bool IsLoopback(const InterfaceEntry& entry) {
    ZelCamErr code = ZelCamErr_Success;
    ZelGenParam::Array* const features = entry.interface->GetParameters(&code);
    if (features == nullptr) return false;
    constexpr int64_t kLoopback = 127;
    const int64_t address = features->GetIntegerValue("GevInterfaceSubnetIPAddress", &code);
    return code == ZelCamErr_Success && (address == 0 || address >> 24 == kLoopback);
}

Camera Describe(ZelCam::DeviceInfo& info, const InterfaceEntry& interface) {
    Camera camera;
    camera.info = &info;
    camera.number = 0;
    camera.id = TextOrEmpty(info.GetID());
    camera.vendor = TextOrEmpty(info.GetVendor());
    camera.model = TextOrEmpty(info.GetModel());
    camera.serial = TextOrEmpty(info.GetSerialNumber());
    camera.userName = TextOrEmpty(info.GetUserDefinedName());
    camera.version = TextOrEmpty(info.GetVersion());
    camera.accessStatus = info.GetAccessStatus();
    camera.interfaceId = interface.id;
    camera.interfaceType = interface.type;
    camera.producer = interface.producer;
    camera.producerName = interface.producerName;
    camera.simulated = interface.simulated;
    return camera;
}

}  // namespace

std::string Producer::OriginWords() const {
    return WordsFor(origin, kOrigins, "");
}

std::string Producer::StateWords() const {
    return WordsFor(state, kStates, "");
}

void Producer::Fail(const std::string& why) {
    state = State::Failed;
    reason = why;
}

void Producer::Skip(const std::string& why) {
    state = State::Skipped;
    reason = why;
}

bool Producer::OnlySimulates() const {
    return !interfaces.empty() && std::all_of(interfaces.begin(), interfaces.end(),
                                              [](const auto& each) { return each.simulated; });
}

std::string Camera::Description() const {
    std::string details = vendor + (vendor.empty() || model.empty() ? "" : " ") + model;
    if (!serial.empty()) details += (details.empty() ? "" : ", ") + ("serial number " + serial);
    if (!userName.empty()) details += (details.empty() ? "" : ", ") + ("\"" + userName + "\"");
    if (simulated) details += details.empty() ? "simulated" : ", simulated";
    return Printable(details.empty() ? id : id + " (" + details + ")");
}

Session::Session(const SessionOptions& options, const Enough& isEnough)
    : options_(options),
      producers_(CollectProducers(options.producers, options.only,
                                  TextOrEmpty(std::getenv("GENICAM_GENTL64_PATH")))) {
    if (options_.simulated) AskForSimulatedCameras();
    // These fork, so they come before anything that starts threads.
    const std::vector<Trial> trials = StartTrials();
    const LiveLine line(Waiting("searching for cameras"));
    AwaitTrials(trials);
    if (!OpenSystem()) return;
    ListInterfaces();
    const milliseconds time(options_.searchMs);
    searchEnd_ = Clock::now() + time;
    for (InterfaceEntry& entry : interfaces_)
        Search(entry, time);
    ListCameras();
    SearchOn(isEnough ? isEnough
                      : [](const Session& session) { return !session.MayLackCameras(); });
    EndIfInterrupted();
}

void Session::SearchOn(const Enough& isEnough) {
    // So that the last search, too, has time for answers, and for asking who has a camera.
    constexpr milliseconds kMore{200};
    // Some producers return at once from a search.
    constexpr uint64_t kPauseMs = 20;
    while (CanSearchOn() && !isEnough(*this)) {
        Pause(kPauseMs);
        const milliseconds time = TimeLeft() + kMore;
        for (InterfaceEntry& entry : interfaces_)
            if (IsOnNetwork(entry)) Search(entry, time);
        ListCameras();
    }
}

bool Session::CanSearchOn() const {
    return TimeLeft() > milliseconds::zero() &&
           std::any_of(interfaces_.begin(), interfaces_.end(), IsOnNetwork);
}

bool Session::MayLackCameras() const {
    return TimeLeft() > milliseconds::zero() &&
           std::any_of(interfaces_.begin(), interfaces_.end(), [](const InterfaceEntry& entry) {
               return IsOnNetwork(entry) && !IsLoopback(entry);
           });
}

milliseconds Session::TimeLeft() const {
    const auto left = std::chrono::ceil<milliseconds>(searchEnd_ - Clock::now());
    return std::max(left, milliseconds::zero());
}

bool Session::HasRealProducer() const {
    return std::any_of(producers_.begin(), producers_.end(), [](const Producer& producer) {
        return producer.state == State::Loaded && !producer.leftOut &&
               producer.origin != Producer::Origin::Default && !producer.OnlySimulates();
    });
}

bool Session::CouldAskForSimulated() const {
    return HasInterfaceList() && !producers_.front().leftOut && !options_.simulated &&
           !options_.noSimulated &&
           std::none_of(interfaces_.begin(), interfaces_.end(),
                        [](const InterfaceEntry& entry) { return entry.simulated; });
}

std::string Session::DefaultProducerName() const {
    if (!system_) return "";
    return TextOrEmpty(system_->GetDisplayName()) + " " + TextOrEmpty(system_->GetVersion());
}

// All trials run at the same time, so that they take only as long as the slowest.
std::vector<Session::Trial> Session::StartTrials() {
    std::vector<Trial> trials;
    for (Producer& producer : producers_) {
        if (producer.state != State::Loaded) continue;
        const std::string reason = WhyNotLoadable(producer.file);
        if (!reason.empty()) {
            producer.Fail(reason);
            continue;
        }
        TrialOptions options;
        options.limitMs = options_.loadMs;
        options.searchMs = options_.searchMs;
        options.searchReal = !producer.leftOut && !options_.simulated;
        options.searchSimulated = !producer.leftOut && !options_.noSimulated;
        trials.push_back({&producer, std::make_unique<ProducerTrial>(producer.file, options)});
    }
    return trials;
}

void Session::AwaitTrials(const std::vector<Trial>& trials) {
    for (const auto& [producer, trial] : trials) {
        trial->Await();
        producer->interfaces = trial->Interfaces();
        if (!trial->Reason().empty()) producer->Fail(trial->Reason());
    }
}

void Session::FailDefault(const std::string& reason) {
    producers_.front().Fail(reason);
    for (size_t i = 1; i < producers_.size(); ++i) {
        if (producers_[i].state == State::Loaded) {
            producers_[i].Skip(
                "not loaded: the library does not work without its default producer");
        }
    }
}

// False when the interfaces cannot be listed.
bool Session::OpenSystem() {
    if (producers_.front().state != State::Loaded) {
        FailDefault(producers_.front().reason);
        return false;
    }
    system_.reset(ZelCam_GetSystem());
    if (!system_) {
        FailDefault("the library cannot use it, and gives no reason");
        return false;
    }
    producers_.front().file = FindDefaultProducer();
    for (size_t i = 1; i < producers_.size(); ++i) {
        EndIfInterrupted();
        if (producers_[i].state == State::Loaded) Register(*system_, producers_[i]);
    }
    list_.reset(system_->GetInterfaceList(ZelCam::InterfaceType::Unknown));
    if (!list_) FailDefault("the library cannot list the interfaces");
    return list_ != nullptr;
}

// The library lists interfaces producer by producer, in the order in which the trials found them.
// The producer of an interface that has appeared since then is unknown.
void Session::ListInterfaces() {
    std::vector<std::pair<const Producer*, const OfferedInterface*>> offered;
    for (const Producer& producer : producers_) {
        if (producer.state != State::Loaded) continue;
        for (const OfferedInterface& interface : producer.interfaces)
            offered.emplace_back(&producer, &interface);
    }
    auto next = offered.begin();
    for (auto* interface = list_->GetFirst(); interface != nullptr; interface = list_->GetNext()) {
        InterfaceEntry entry;
        entry.interface = interface;
        entry.id = TextOrEmpty(interface->GetId());
        entry.description = TextOrEmpty(interface->GetDescription());
        entry.type = interface->GetType();
        const Producer* producer = nullptr;
        const auto found = std::find_if(
            next, offered.end(), [&](const auto& each) { return each.second->id == entry.id; });
        if (found != offered.end()) {
            producer = found->first;
            entry.producer = producer->file;
            entry.producerName = producer->name;
            entry.simulated = found->second->simulated;
            next = found + 1;
        }
        if (IsAskedFor(entry, producer)) interfaces_.push_back(entry);
    }
    std::stable_partition(interfaces_.begin(), interfaces_.end(),
                          [](const InterfaceEntry& entry) { return !entry.simulated; });
}

// `producer` is null when it is unknown.
bool Session::IsAskedFor(const InterfaceEntry& entry, const Producer* producer) const {
    if (entry.simulated ? options_.noSimulated : options_.simulated) return false;
    return producer != nullptr ? !producer->leftOut : options_.only.empty();
}

void Session::Search(InterfaceEntry& entry, milliseconds time) {
    EndIfInterrupted();
    entry.problem = WhyNotSearched(*entry.interface, time);
}

void Session::ListCameras() {
    cameras_.clear();
    for (InterfaceEntry& entry : interfaces_)
        ListCameras(entry);
    size_t number = 0;
    for (Camera& camera : cameras_)
        camera.number = ++number;
}

void Session::ListCameras(InterfaceEntry& entry) {
    const Released<ZelCam::List<ZelCam::DeviceInfo>> list(entry.interface->GetDeviceInfoList());
    entry.cameras = 0;
    if (!list) {
        if (entry.problem.empty()) entry.problem = "the cameras cannot be listed";
        return;
    }
    entry.cameras = list->GetCount();
    const auto before = static_cast<std::ptrdiff_t>(cameras_.size());
    for (auto* info = list->GetFirst(); info != nullptr; info = list->GetNext())
        cameras_.push_back(Describe(*info, entry));
    // The order must not depend on how long each took to answer.
    if (!IsOnNetwork(entry)) return;
    std::stable_sort(cameras_.begin() + before, cameras_.end(),
                     [](const Camera& a, const Camera& b) { return a.id < b.id; });
}

}  // namespace ZelTool
