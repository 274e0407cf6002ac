#include "producers/gigefeatures/gigefeatures.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "producers/server/base/error.h"
#include "producers/server/registers/selectorrows.h"

namespace ZelCti {

namespace {

using std::chrono::milliseconds;

constexpr const char* kInterface = "InterfaceInformation";
constexpr const char* kCameras = "DeviceEnumeration";
constexpr const char* kActions = "ActionControl";

Feature& AddIpAddress(FeatureTable& features, const char* category, const char* name,
                      const char* toolTip) {
    return features.IntReg(name, toolTip).In(category).Representation("IPV4Address");
}

// A selector over a list that the adapter has at the moment; it shows the first item again when the
// list has become too short. `item` gives the selected one.
template <typename Item>
std::function<Item()> AddListSelector(FeatureTable& features, const char* name, const char* toolTip,
                                      uint64_t address, std::function<std::vector<Item>()> list) {
    const auto selected = std::make_shared<size_t>(0);
    const auto indexIn = [selected](const std::vector<Item>& items) {
        return *selected < items.size() ? *selected : size_t{0};
    };
    AddSelector(features, name, toolTip, address,
                {[=] { return uint64_t{indexIn(list())}; },
                 [=](uint64_t value) {
                     if (value < list().size()) return;
                     throw Error(GenTL::GC_ERR_INVALID_VALUE, "the list is shorter");
                 },
                 [selected](uint64_t value) { *selected = static_cast<size_t>(value); }},
                [=] { return uint64_t{list().size()}; })
        .In(kInterface)
        .Expert();
    return [=] {
        const std::vector<Item> items = list();
        if (items.empty()) throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the adapter has none");
        return items[indexIn(items)];
    };
}

void AddAdapter(FeatureTable& features, const GigeHost& host) {
    features.IntReg("GevInterfaceMACAddress", "MAC address of the adapter.")
        .In(kInterface)
        .At(0x4000, 8)
        .Representation("MACAddress")
        .Get([&host] { return host.MacAddress(); });
    const auto gateway =
        AddListSelector<uint32_t>(features, "GevInterfaceGateway", "Index of the gateway.", 0x4014,
                                  [&host] { return host.Gateways(); });
    AddIpAddress(features, kInterface, "GevInterfaceGateway", "Gateway of the adapter.")
        .Expert()
        .AvailableIf("GevInterfaceGatewayCount")
        .SelectedBy("GevInterfaceGatewaySelector")
        .At(0x4010)
        .Get(gateway);
    const auto subnet =
        AddListSelector<GigeHost::Subnet>(features, "GevInterfaceSubnet", "Index of the subnet.",
                                          0x401C, [&host] { return host.Subnets(); });
    const auto ofSubnet = [](Feature& feature) {
        feature.AvailableIf("GevInterfaceSubnetCount").SelectedBy("GevInterfaceSubnetSelector");
    };
    AddIpAddress(features, kInterface, "GevInterfaceSubnetIPAddress",
                 "Address of the adapter in the subnet.")
        .At(0x4008)
        .Get([subnet] { return subnet().address; })
        .Apply(ofSubnet);
    AddIpAddress(features, kInterface, "GevInterfaceSubnetMask", "Mask of the subnet.")
        .At(0x400C)
        .Get([subnet] { return subnet().mask; })
        .Apply(ofSubnet);
}

// The addresses of a camera, in a category of an interface or device module.
void AddCameraNetwork(FeatureTable& features, const char* category,
                      const std::function<CameraNetwork()>& network,
                      const std::function<void(Feature&)>& trait) {
    const auto addIp = [&](const char* name, const char* toolTip, uint64_t address,
                           uint32_t CameraNetwork::*member) {
        AddIpAddress(features, category, name, toolTip)
            .At(address)
            .Get([network, member] { return network().*member; })
            .Apply(trait);
    };
    features.IntReg("GevDeviceMACAddress", "MAC address of the camera.")
        .In(category)
        .At(0x4100, 8)
        .Representation("MACAddress")
        .Get([network] { return network().macAddress; })
        .Apply(trait);
    addIp("GevDeviceIPAddress", "Address of the camera.", 0x4108, &CameraNetwork::address);
    addIp("GevDeviceSubnetMask", "Mask of the subnet of the camera.", 0x410C, &CameraNetwork::mask);
    addIp("GevDeviceGateway", "Gateway of the camera; 0.0.0.0 is none.", 0x4110,
          &CameraNetwork::gateway);
}

// What the next command forces upon a camera, and how the last one went; the registers own it.
struct Forcing {
    CameraNetwork network;
    uint32_t timeoutMs = 1000;
    bool hasSucceeded = false;
};

void ForceNetwork(GigeHost& host, Camera& camera, Forcing& forcing) {
    forcing.hasSucceeded = false;
    host.ForceNetwork(camera, forcing.network, milliseconds(forcing.timeoutMs));
    forcing.hasSucceeded = true;
}

// The lowest and highest 256 addresses of the network that hosts choose addresses in by themselves.
bool IsReserved(uint32_t address) {
    constexpr uint32_t kLinkLocal = 0xA9FE;
    const uint32_t third = address >> 8 & 0xFF;
    return address >> 16 == kLinkLocal && (third == 0 || third == 0xFF);
}

// A free address in a subnet of the adapter. Where the search begins depends on the camera, so that
// those who propose addresses at the same time hardly propose the same.
CameraNetwork ProposedNetwork(const GigeHost& host, const CameraNetwork& camera) {
    constexpr uint32_t kMostTries = 65536;
    for (const auto& [address, mask] : host.Subnets()) {
        const uint32_t numHosts = ~mask > 1 ? ~mask - 1 : 0;  // without network and broadcast
        for (uint32_t i = 0; i < std::min(numHosts, kMostTries); ++i) {
            const uint64_t number = (camera.macAddress + i) % numHosts + 1;
            const uint32_t candidate = (address & mask) | static_cast<uint32_t>(number);
            if (candidate == address || IsReserved(candidate) || host.IsTaken(candidate)) continue;
            return {camera.macAddress, candidate, mask, 0};
        }
    }
    throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "no subnet of the adapter has a free address");
}

CameraNetwork NetworkOf(const Camera& camera) {
    if (const auto network = camera.Network()) return *network;
    throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the camera is on no network");
}

void AddForcedNetwork(FeatureTable& features, GigeHost& host,
                      const HostInterface::SelectedCamera& selected) {
    const auto forcing = std::make_shared<Forcing>();
    const auto ofCameras = [](Feature& feature) {
        feature.In(kCameras).Expert().AvailableIf("DeviceCount");
    };
    const auto addIp = [&](const char* name, const char* toolTip, uint64_t address,
                           uint32_t CameraNetwork::*member) {
        AddIpAddress(features, kCameras, name, toolTip)
            .At(address)
            .Get([=] { return forcing->network.*member; })
            .Set([=](uint64_t value) { forcing->network.*member = static_cast<uint32_t>(value); })
            .InvalidatedBy({"GevDeviceProposeIP"})
            .Apply(ofCameras);
    };
    addIp("GevDeviceForceIPAddress",
          "Address to give the camera; 0.0.0.0 gives it the settings of its configuration again.",
          0x4200, &CameraNetwork::address);
    addIp("GevDeviceForceSubnetMask", "Mask to give the camera.", 0x4204, &CameraNetwork::mask);
    addIp("GevDeviceForceGateway", "Gateway to give the camera.", 0x4208, &CameraNetwork::gateway);
    features
        .Command("GevDeviceForceIP",
                 "Gives the camera the address, mask and gateway above; refused while anyone "
                 "has it open.")
        .SelectedBy("DeviceSelector")
        .At(0x420C)
        .Does([=, &host] { ForceNetwork(host, *selected(), *forcing); })
        .DoneAtOnce()
        .Apply(ofCameras);
    features.IntReg("GevDeviceForceIPTimeout", "Time that the camera has to confirm an address.")
        .At(0x4210)
        .Unit("ms")
        .Get([forcing] { return forcing->timeoutMs; })
        .Set([forcing](uint64_t value) { forcing->timeoutMs = static_cast<uint32_t>(value); })
        .Apply(ofCameras);
    features
        .Boolean("GevDeviceLastForceIPSuccess",
                 "Whether the camera has confirmed the address that was forced last.")
        .At(0x4214)
        .Get([forcing] { return uint64_t{forcing->hasSucceeded}; })
        .Apply(ofCameras);
    features
        .Command("GevDeviceProposeIP",
                 "Puts a free address of the adapter's subnet, its mask and no gateway into the "
                 "features above.")
        .SelectedBy("DeviceSelector")
        .At(0x4218)
        .Does([=, &host] { forcing->network = ProposedNetwork(host, NetworkOf(*selected())); })
        .DoneAtOnce()
        .Apply(ofCameras);
}

// The action command that the features make up; the registers own it.
struct PreparedAction {
    Gvcp::Action action;
    bool isScheduled = false;
    uint64_t time = 0;
    uint32_t to = 0xFFFFFFFF;
};

}  // namespace

void AddGigeInterfaceFeatures(FeatureTable& features, GigeHost& host,
                              const HostInterface::SelectedCamera& selected) {
    AddAdapter(features, host);
    AddCameraNetwork(
        features, kCameras, [selected] { return NetworkOf(*selected()); },
        [](Feature& feature) { feature.AvailableIf("DeviceCount").SelectedBy("DeviceSelector"); });
    AddForcedNetwork(features, host, selected);
}

void AddActionFeatures(FeatureTable& features,
                       std::function<void(const Gvcp::Action& action, uint32_t to)> send) {
    const auto prepared = std::make_shared<PreparedAction>();
    features.Category("ActionControl", "Commands that let cameras do something at the same time.");
    const auto addKey = [&](const char* name, const char* toolTip, uint64_t address,
                            uint32_t Gvcp::Action::*member) {
        features.IntReg(name, toolTip)
            .At(address)
            .Representation("HexNumber")
            .Get([=] { return prepared->action.*member; })
            .Set([=](uint64_t value) { prepared->action.*member = static_cast<uint32_t>(value); });
    };
    addKey("ActionDeviceKey", "Key of the cameras that are meant.", 0x4300,
           &Gvcp::Action::deviceKey);
    addKey("ActionGroupKey", "Key of the group of actions.", 0x4304, &Gvcp::Action::groupKey);
    addKey("ActionGroupMask", "Which actions of the group are meant.", 0x4308,
           &Gvcp::Action::groupMask);
    features.Boolean("ActionScheduledTimeEnable", "Whether the action waits for a time.")
        .At(0x430C)
        .Get([=] { return uint64_t{prepared->isScheduled}; })
        .Set([=](uint64_t value) { prepared->isScheduled = value != 0; });
    features.IntReg("ActionScheduledTime", "The time, in ticks of the clocks of the cameras.")
        .At(0x4310, 8)
        .Get([=] { return prepared->time; })
        .Set([=](uint64_t value) { prepared->time = value; });
    AddIpAddress(features, kActions, "GevActionDestinationIPAddress",
                 "Where the command is sent; 255.255.255.255 is to all.")
        .Expert()
        .At(0x4318)
        .Get([=] { return prepared->to; })
        .Set([=](uint64_t value) { prepared->to = static_cast<uint32_t>(value); });
    features.Command("ActionCommand", "Sends the command.")
        .At(0x431C)
        .Does([prepared, send = std::move(send)] {
            Gvcp::Action action = prepared->action;
            if (prepared->isScheduled) action.time = prepared->time;
            send(action, prepared->to);
        })
        .DoneAtOnce();
}

void AddGigeCameraFeatures(FeatureTable& features, const Camera& camera) {
    AddCameraNetwork(
        features, "DeviceInformation", [&camera] { return NetworkOf(camera); }, [](Feature&) {});
}

}  // namespace ZelCti
