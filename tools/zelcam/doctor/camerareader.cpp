#include "tools/zelcam/doctor/camerareader.h"

#include <algorithm>
#include <arpa/inet.h>

#include "ZelGenParam/Array.h"
#include "tools/zelcam/camera/reachability.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/doctor/adapterreader.h"

namespace ZelTool {

namespace {

bool HasAddress(const AdapterFacts& adapter, uint32_t address) {
    return std::any_of(adapter.subnets.begin(), adapter.subnets.end(),
                       [&](const Subnet& subnet) { return subnet.address == address; });
}

// Producers name interfaces as they like, so that an address is the better mark.
AdapterFacts* AdapterOf(const InterfaceEntry& entry, std::vector<AdapterFacts>& adapters) {
    if (entry.simulated || entry.type != ZelCam::InterfaceType::GEV) return nullptr;
    ZelCamErr code = ZelCamErr_Success;
    ZelGenParam::Array* const features = entry.interface->GetParameters(&code);
    const int64_t address =
        features != nullptr ? features->GetIntegerValue("GevInterfaceSubnetIPAddress", &code) : 0;
    for (AdapterFacts& adapter : adapters) {
        if (adapter.name == entry.id) return &adapter;
        const bool isTold = code == ZelCamErr_Success && address != 0;
        if (isTold && HasAddress(adapter, static_cast<uint32_t>(address))) return &adapter;
    }
    return nullptr;
}

std::optional<uint32_t> AddressAsNumber(const Camera& camera) {
    in_addr address{};
    if (inet_pton(AF_INET, AddressOf(camera).c_str(), &address) != 1) return std::nullopt;
    return ntohl(address.s_addr);
}

std::string AdapterNameOf(const Session& session, const Camera& camera,
                          std::vector<AdapterFacts> adapters) {
    for (const InterfaceEntry& entry : session.Interfaces()) {
        if (entry.id != camera.interfaceId || entry.producer != camera.producer) continue;
        const AdapterFacts* const adapter = AdapterOf(entry, adapters);
        return adapter != nullptr ? adapter->name : "";
    }
    return "";
}

bool IsForeign(const CameraFacts& camera, const std::vector<AdapterFacts>& adapters) {
    return std::none_of(adapters.begin(), adapters.end(), [&](const AdapterFacts& adapter) {
        return adapter.name == camera.adapter &&
               std::any_of(adapter.subnets.begin(), adapter.subnets.end(),
                           [&](const Subnet& subnet) {
                               const uint32_t other = subnet.address ^ camera.address.value_or(0);
                               return (other & subnet.mask) == 0;
                           });
    });
}

bool IsFree(const Camera& camera) {
    return camera.accessStatus == ZelCam::AccessStatus_ReadWrite ||
           camera.accessStatus == ZelCam::AccessStatus_Unknown;
}

CameraFacts FactsOf(const Session& session, const Camera& camera,
                    const std::vector<AdapterFacts>& adapters) {
    CameraFacts facts;
    facts.id = Printable(camera.id);
    facts.isSimulated = camera.simulated;
    facts.isGigE = camera.interfaceType == ZelCam::InterfaceType::GEV;
    facts.isUsb = camera.interfaceType == ZelCam::InterfaceType::U3V;
    facts.isFree = IsFree(camera);
    facts.cannotBeReached = camera.accessStatus == ZelCam::AccessStatus_NoAccess;
    facts.accessReason = Printable(AccessReasonOf(camera));
    if (!facts.isGigE || camera.simulated) return facts;
    facts.adapter = AdapterNameOf(session, camera, adapters);
    facts.address = AddressAsNumber(camera);
    if (NeedsAnAddress(camera) && IsForeign(facts, adapters)) {
        facts.forceCommand = ForceCommand(camera);
    }
    if (facts.address) facts.routedThrough = AdapterTowards(*facts.address, adapters);
    return facts;
}

}  // namespace

std::vector<CameraFacts> ReadCameras(const Session& session,
                                     const std::vector<AdapterFacts>& adapters) {
    std::vector<CameraFacts> cameras;
    for (const Camera& camera : session.Cameras())
        cameras.push_back(FactsOf(session, camera, adapters));
    return cameras;
}

void MarkSearched(const Session& session, std::vector<AdapterFacts>& adapters) {
    for (const InterfaceEntry& entry : session.Interfaces()) {
        AdapterFacts* const adapter = AdapterOf(entry, adapters);
        if (adapter != nullptr) adapter->isSearched = true;
    }
}

std::string ProducerProblemOf(const Session& session, const std::string& searchedInterfaces) {
    if (!session.HasInterfaceList()) return session.Producers().front().reason;
    if (session.AsksForSimulated() || searchedInterfaces.empty()) return "";
    const bool hasReal = std::any_of(session.Interfaces().begin(), session.Interfaces().end(),
                                     [](const InterfaceEntry& entry) { return !entry.simulated; });
    return hasReal ? "" : "no producer searches an adapter";
}

}  // namespace ZelTool
