#include "producers/gigevision/gevinterface.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "producers/gigevision/discovery/hostclock.h"
#include "producers/server/base/error.h"

namespace ZelGev {

using ZelCti::CameraList;
using ZelCti::Error;

namespace {

constexpr unsigned kNoAdapter = 0;

int64_t OffsetOrThrow(const std::optional<int64_t>& offset) {
    if (offset) return *offset;
    throw ZelCti::Error(GenTL::GC_ERR_NOT_AVAILABLE,
                        "the adapter has no clock, or this user may not read it (/dev/ptp*)");
}

// Cameras that share a time with this machine (IEEE 1588) are as exact as these clocks.
void AddClocks(ZelCti::FeatureTable& features,
               const std::function<std::optional<int64_t>()>& adapterOffset) {
    constexpr const char* kCategory = "HostClockControl";
    features.Category(kCategory, "How exact the clocks of this machine are.").Expert();
    features.Boolean("HostClockSynchronized", "Whether the clock of the system follows another.")
        .Expert()
        .At(0x4410)
        .Get([] { return uint64_t{ReadHostClock().isSynchronized}; });
    const auto add = [&](const char* name, const char* toolTip, uint64_t address, const char* unit,
                         std::function<int64_t()> get) -> ZelCti::Feature& {
        return features.IntReg(name, toolTip)
            .Expert()
            .Signed()
            .At(address, 8)
            .Unit(unit)
            .Get([get = std::move(get)] { return static_cast<uint64_t>(get()); });
    };
    add("HostClockOffset", "What the clock of the system still has to be corrected by.", 0x4418,
        "ns", [] { return ReadHostClock().offset; });
    add("HostClockMaximumError", "Largest error of the clock of the system.", 0x4420, "ns",
        [] { return ReadHostClock().maxError; });
    add("HostClockTaiOffset",
        "Seconds that atomic time, which IEEE 1588 distributes, is ahead of the clock of the "
        "system; 0 is unknown.",
        0x4428, "s", [] { return ReadHostClock().taiOffset; });
    features
        .Boolean("GevInterfaceHasClock",
                 "Whether the adapter has a clock that this user may read (/dev/ptp*).")
        .Expert()
        .At(0x4438)
        .Get([adapterOffset] { return uint64_t{adapterOffset().has_value()}; });
    add("GevInterfaceClockOffset",
        "How far the clock of the adapter is ahead of that of the system.", 0x4430, "ns",
        [adapterOffset] { return OffsetOrThrow(adapterOffset()); })
        .AvailableIf("GevInterfaceHasClock");
}

// Names of adapters are kept by the system from one start to the next; their indices are not.
ZelCti::InterfaceInfo InterfaceInfoOf(const std::string& name, const std::string& displayName) {
    ZelCti::InterfaceInfo info;
    info.id = "GEV-" + name;
    info.displayName = displayName;
    info.tlType = TLTypeGEVName;
    info.vendor = "ZelCam";
    info.model = "Network adapter";
    info.version = ZELCTI_VERSION;
    return info;
}

}  // namespace

std::shared_ptr<GevCamera> CameraObjects::For(const ListedCamera& listed) {
    const std::lock_guard lock(mutex_);
    for (auto i = cameras_.begin(); i != cameras_.end();)
        i = i->second.expired() ? cameras_.erase(i) : std::next(i);
    std::weak_ptr<GevCamera>& known = cameras_[listed.camera.id];
    auto camera = known.lock();
    if (camera != nullptr && camera->Is(listed.camera)) {
        camera->Update(listed);
        return camera;
    }
    camera = std::make_shared<GevCamera>(listed);
    known = camera;
    return camera;
}

GevInterface::GevInterface(std::shared_ptr<Discovery> discovery,
                           std::shared_ptr<CameraObjects> objects, const NetworkAdapter& adapter)
    : info_(InterfaceInfoOf(adapter.name, AdapterText(adapter))),
      adapter_(adapter.index),
      discovery_(std::move(discovery)),
      objects_(std::move(objects)),
      cameras_(std::make_shared<const CameraList>()) {}

GevInterface::GevInterface(std::shared_ptr<Discovery> discovery, const std::string& name,
                           const std::string& reason)
    : info_(InterfaceInfoOf(name, name + " (" + reason + ")")),
      adapter_(kNoAdapter),
      discovery_(std::move(discovery)),
      cameras_(std::make_shared<const CameraList>()) {}

std::shared_ptr<const CameraList> GevInterface::Cameras() const {
    const std::lock_guard lock(mutex_);
    return cameras_;
}

bool GevInterface::HasSearched() const {
    const std::lock_guard lock(mutex_);
    return hasSearched_;
}

void GevInterface::UpdateCameras(ZelCti::Deadline deadline) {
    if (adapter_ == kNoAdapter) return;
    CameraList cameras;
    for (const ListedCamera& listed : discovery_->Search(adapter_, deadline))
        cameras.push_back(objects_->For(listed));
    const std::lock_guard lock(mutex_);
    hasSearched_ = true;
    if (cameras != *cameras_) cameras_ = std::make_shared<const CameraList>(std::move(cameras));
}

void GevInterface::AddFeatures(ZelCti::FeatureTable& features, const SelectedCamera& camera) {
    AddGigeInterfaceFeatures(features, *this, camera);
    AddActionFeatures(features, [this](const ZelCti::Gvcp::Action& action, uint32_t to) {
        discovery_->SendAction(adapter_, action, to);
    });
    features
        .IntReg("GevDiscoveryIPAddress",
                "Address that is asked directly when cameras are looked for, as behind a router; "
                "0.0.0.0 is none.")
        .In("DeviceEnumeration")
        .Expert()
        .Representation("IPV4Address")
        .At(0x4400)
        .Get([this] { return discovery_->AskedAlso(adapter_); })
        .Set([this](uint64_t value) {
            discovery_->AskAlso(adapter_, static_cast<uint32_t>(value));
        });
    AddClocks(features, [this] { return ClockOffset(); });
}

std::optional<int64_t> GevInterface::ClockOffset() const {
    const auto adapter = discovery_->Adapter(adapter_);
    return adapter ? AdapterClockOffset(adapter->name) : std::nullopt;
}

uint64_t GevInterface::MacAddress() const {
    const auto adapter = discovery_->Adapter(adapter_);
    return adapter ? adapter->mac : 0;
}

std::vector<ZelCti::GigeHost::Subnet> GevInterface::Subnets() const {
    std::vector<Subnet> subnets;
    if (const auto adapter = discovery_->Adapter(adapter_)) {
        for (const auto& subnet : adapter->subnets)
            subnets.push_back({subnet.address, subnet.mask});
    }
    return subnets;
}

std::vector<uint32_t> GevInterface::Gateways() const {
    const auto adapter = discovery_->Adapter(adapter_);
    return adapter ? adapter->gateways : std::vector<uint32_t>();
}

void GevInterface::ForceNetwork(ZelCti::Camera& camera, const ZelCti::CameraNetwork& network,
                                std::chrono::milliseconds timeout) {
    const uint64_t mac = camera.Network().value_or(ZelCti::CameraNetwork{}).macAddress;
    if (mac == 0) {
        throw Error(GenTL::GC_ERR_NOT_AVAILABLE, camera.Id() + " has no MAC address");
    }
    const ZelCti::Gvcp::ForceIp forced{mac, network.address, network.mask, network.gateway};
    const bool isConfirmed =
        discovery_->ForceIp(adapter_, forced, std::chrono::steady_clock::now() + timeout);
    // A camera that chooses its address itself confirms nothing.
    if (isConfirmed || network.address == 0) return;
    throw Error(GenTL::GC_ERR_TIMEOUT, camera.Id() +
                                           " does not confirm the address: an "
                                           "application may have it open");
}

}  // namespace ZelGev
