#include "tools/zelcam/session.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include "tools/zelcam/producerfile.h"
#include "tools/zelcam/producerlist.h"
#include "tools/zelcam/words.h"

namespace {

using State = Producer::State;

std::string EnvironmentOrEmpty(const char* name) {
    return TextOrEmpty(std::getenv(name));
}

// For a file that loads: what it says itself when it is started, else `otherwise`.
std::string RefusalWords(const std::string& file, const std::string& otherwise) {
    const std::string reason = WhyNotStarting(file);
    return "it loads but refuses to start: " + (reason.empty() ? otherwise : reason);
}

// Registers a producer; a failure is noted in it.
void Register(ZelCam::System& system, Producer& producer) {
    const ZelCamErr code = system.RegisterGenTLProvider(producer.file.c_str());
    if (code == ZelCamErr_Success) return;
    std::string reason = WhyNotLoadable(producer.file);
    producer.Fail(reason.empty() ? RefusalWords(producer.file, ErrorWords(code)) : reason);
}

enum class Counted { Yes, NoList, NotRegistered };

// The number of interfaces with the default producer and, unless null, one more.
Counted CountInterfaces(Producer* producer, size_t* count) {
    const Released<ZelCam::System> system(ZelCam_GetSystem());
    if (!system) return Counted::NotRegistered;
    if (producer != nullptr) {
        Register(*system, *producer);
        if (producer->state != State::Loaded) return Counted::NotRegistered;
    }
    const Released<ZelCam::List<ZelCam::Interface>> list(
        system->GetInterfaceList(ZelCam::InterfaceType::Unknown));
    if (!list) return Counted::NoList;
    *count = list->GetCount();
    return Counted::Yes;
}

// Lets the interface search for cameras; returns what went wrong.
std::string Search(ZelCam::Interface& interface, uint64_t searchMs) {
    try {
        const ZelCamErr code = interface.ReEnumerateDevices(nullptr, searchMs);
        return code == ZelCamErr_Success ? ""
                                         : "the search for cameras failed: " + ErrorWords(code);
    } catch (const std::system_error& error) {
        return std::string("the cameras cannot be listed: ") + error.what();
    }
}

Camera Describe(ZelCam::DeviceInfo& info, const InterfaceEntry& interface, size_t number) {
    Camera camera;
    camera.info = &info;
    camera.number = number;
    camera.id = TextOrEmpty(info.GetID());
    camera.vendor = TextOrEmpty(info.GetVendor());
    camera.model = TextOrEmpty(info.GetModel());
    camera.serial = TextOrEmpty(info.GetSerialNumber());
    camera.userName = TextOrEmpty(info.GetUserDefinedName());
    camera.version = TextOrEmpty(info.GetVersion());
    camera.accessStatus = info.GetAccessStatus();
    camera.interfaceId = interface.id;
    camera.interfaceType = interface.type;
    return camera;
}

}  // namespace

std::string Producer::OriginWords() const {
    switch (origin) {
        case Origin::Option:
            return "--producer";
        case Origin::Environment:
            return "GENICAM_GENTL64_PATH";
        default:
            return "default";
    }
}

std::string Producer::StateWords() const {
    switch (state) {
        case State::Failed:
            return "failed";
        case State::Skipped:
            return "skipped";
        default:
            return "loaded";
    }
}

void Producer::Fail(const std::string& why) {
    state = State::Failed;
    reason = why;
}

void Producer::Skip(const std::string& why) {
    state = State::Skipped;
    reason = why;
}

std::string Camera::Description() const {
    std::string details = vendor + (vendor.empty() || model.empty() ? "" : " ") + model;
    if (!serial.empty()) details += (details.empty() ? "" : ", ") + ("serial number " + serial);
    if (!userName.empty()) details += (details.empty() ? "" : ", ") + ("\"" + userName + "\"");
    return details.empty() ? id : id + " (" + details + ")";
}

Session::Session(const SessionOptions& options, Detail detail)
    : producers_(CollectProducers(options.producers, EnvironmentOrEmpty("GENICAM_GENTL64_PATH"))) {
    if (detail == Detail::CamerasAndOwners && HasSeveral()) Probe();
    if (!OpenSystem() && producers_.front().state == State::Loaded && interfaceCounts_.empty()) {
        Probe();
        OpenSystem();
    }
    if (!list_) return;
    for (auto* interface = list_->GetFirst(); interface != nullptr; interface = list_->GetNext()) {
        ListInterface(*interface, options.searchMs);
    }
    AssignOwners();
}

std::string Session::DefaultProducerName() const {
    if (!system_) return "";
    return TextOrEmpty(system_->GetDisplayName()) + " " + TextOrEmpty(system_->GetVersion());
}

bool Session::HasSeveral() const {
    return std::any_of(producers_.begin() + 1, producers_.end(),
                       [](const Producer& producer) { return producer.state == State::Loaded; });
}

// False when the interfaces cannot be listed, which one bad producer is enough for.
bool Session::OpenSystem() {
    list_.reset();
    system_.reset();
    if (producers_.front().state != State::Loaded) return false;
    system_.reset(ZelCam_GetSystem());
    if (!system_) {
        ExplainMissingDefault();
        return false;
    }
    producers_.front().file = FindDefaultProducer();
    for (size_t i = 1; i < producers_.size(); ++i) {
        if (producers_[i].state == State::Loaded) Register(*system_, producers_[i]);
    }
    list_.reset(system_->GetInterfaceList(ZelCam::InterfaceType::Unknown));
    return list_ != nullptr;
}

void Session::ExplainMissingDefault() {
    std::string reason;
    if (FindDefaultProducer().empty()) {
        reason = "there is no such file in the folders where it is looked for:";
        for (const std::string& folder : DefaultProducerFolders())
            reason += " " + folder;
    } else {
        reason = WhyNotLoadable(producers_.front().file);
        if (reason.empty()) reason = RefusalWords(producers_.front().file, "it does not say why");
    }
    FailDefault(reason);
}

void Session::FailDefault(const std::string& reason) {
    producers_.front().Fail(reason);
    for (size_t i = 1; i < producers_.size(); ++i) {
        if (producers_[i].state == State::Loaded) {
            producers_[i].Skip("not used: the library does not work without its default producer");
        }
    }
}

// Tries each producer alone with the default one: finds those that would spoil the listing for all,
// and how many interfaces each has.
void Session::Probe() {
    list_.reset();
    system_.reset();
    interfaceCounts_.assign(producers_.size(), 0);
    const Counted standard = CountInterfaces(nullptr, &interfaceCounts_.front());
    if (standard == Counted::NoList) FailDefault("it cannot tell its interfaces");
    if (standard != Counted::Yes) return;
    for (size_t i = 1; i < producers_.size(); ++i) {
        if (producers_[i].state != State::Loaded) continue;
        size_t both = 0;
        const Counted counted = CountInterfaces(&producers_[i], &both);
        if (counted == Counted::NoList) producers_[i].Fail("it cannot tell its interfaces");
        if (counted == Counted::Yes) {
            interfaceCounts_[i] = both - std::min(both, interfaceCounts_.front());
        }
    }
}

// Interfaces are listed producer by producer. When their number changed since Probe counted them,
// nothing is claimed.
void Session::AssignOwners() {
    if (!HasSeveral()) interfaceCounts_.assign(1, interfaces_.size());
    size_t total = 0;
    for (size_t count : interfaceCounts_)
        total += count;
    if (total != interfaces_.size()) return;
    size_t next = 0;
    for (size_t i = 0; i < interfaceCounts_.size(); ++i) {
        for (size_t left = interfaceCounts_[i]; left > 0; --left) {
            interfaces_[next++].producer = producers_[i].file;
        }
    }
}

void Session::ListInterface(ZelCam::Interface& interface, uint64_t searchMs) {
    InterfaceEntry entry;
    entry.id = TextOrEmpty(interface.GetId());
    entry.description = TextOrEmpty(interface.GetDescription());
    entry.type = interface.GetType();
    entry.problem = Search(interface, searchMs);
    ListCameras(interface, entry);
    interfaces_.push_back(entry);
}

void Session::ListCameras(ZelCam::Interface& interface, InterfaceEntry& entry) {
    const Released<ZelCam::List<ZelCam::DeviceInfo>> list(interface.GetDeviceInfoList());
    if (!list) {
        if (entry.problem.empty()) entry.problem = "the cameras cannot be listed";
        return;
    }
    entry.cameras = list->GetCount();
    for (auto* info = list->GetFirst(); info != nullptr; info = list->GetNext()) {
        cameras_.push_back(Describe(*info, entry, cameras_.size() + 1));
    }
}
