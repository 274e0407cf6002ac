#include "producers/simulator/gevfeatures.h"

#include "producers/simulator/config/network.h"

namespace ZelSim {

using ZelCti::Feature;
using ZelCti::FeatureTable;

namespace {

using SelectedCamera = std::function<std::shared_ptr<Camera>()>;

void AddAdapter(FeatureTable& features, const std::string& id, const IpSettings& adapter) {
    const auto add = [&](const char* name, const char* toolTip) -> Feature& {
        return features.IntReg(name, toolTip).In("InterfaceInformation");
    };
    const auto addSelector = [&](const char* name, const char* toolTip) {
        features.Integer(name, toolTip).In("InterfaceInformation").Expert().Value(0).Limits(0, 0);
    };
    add("GevInterfaceMACAddress", "MAC address of the adapter.")
        .At(0x4000, 8)
        .Representation("MACAddress")
        .Get([=] { return MacAddressOf(id); });
    addSelector("GevInterfaceGatewaySelector", "Index of the gateway; the adapter has one.");
    add("GevInterfaceGateway", "Gateway of the adapter; 0.0.0.0 is none.")
        .Expert()
        .SelectedBy("GevInterfaceGatewaySelector")
        .At(0x4010)
        .Representation("IPV4Address")
        .Get([=] { return adapter.gateway; });
    addSelector("GevInterfaceSubnetSelector", "Index of the subnet; the adapter has one.");
    add("GevInterfaceSubnetIPAddress", "Address of the adapter in the subnet.")
        .SelectedBy("GevInterfaceSubnetSelector")
        .At(0x4008)
        .Representation("IPV4Address")
        .Get([=] { return adapter.address; });
    add("GevInterfaceSubnetMask", "Mask of the subnet.")
        .SelectedBy("GevInterfaceSubnetSelector")
        .At(0x400C)
        .Representation("IPV4Address")
        .Get([=] { return adapter.mask; });
}

// The addresses of a camera, in a category of an interface or device module.
template <typename GetCamera>
void AddNetwork(FeatureTable& features, const char* category, const GetCamera& camera,
                const std::function<void(Feature&)>& trait) {
    const auto addIp = [&](const char* name, const char* toolTip, uint64_t address,
                           uint32_t IpSettings::*member) {
        features.IntReg(name, toolTip)
            .In(category)
            .At(address)
            .Representation("IPV4Address")
            .Get([camera, member] { return camera()->Ip().*member; })
            .Apply(trait);
    };
    features.IntReg("GevDeviceMACAddress", "MAC address of the camera.")
        .In(category)
        .At(0x4100, 8)
        .Representation("MACAddress")
        .Get([camera] { return MacAddressOf(camera()->Id()); })
        .Apply(trait);
    addIp("GevDeviceIPAddress", "Address of the camera.", 0x4108, &IpSettings::address);
    addIp("GevDeviceSubnetMask", "Mask of the subnet of the camera.", 0x410C, &IpSettings::mask);
    addIp("GevDeviceGateway", "Gateway of the camera; 0.0.0.0 is none.", 0x4110,
          &IpSettings::gateway);
}

void AddForcedNetwork(FeatureTable& features, const SelectedCamera& selected) {
    // What the next command forces upon a camera; the registers own it.
    const auto forced = std::make_shared<IpSettings>();
    const auto add = [&](const char* name, const char* toolTip,
                         uint32_t IpSettings::*member) -> Feature& {
        return features.IntReg(name, toolTip)
            .In("DeviceEnumeration")
            .Expert()
            .AvailableIf("DeviceCount")
            .Representation("IPV4Address")
            .Get([=] { return (*forced).*member; })
            .Set([=](uint64_t value) { (*forced).*member = static_cast<uint32_t>(value); });
    };
    add("GevDeviceForceIPAddress",
        "Address to give the camera; 0.0.0.0 gives it the settings of its configuration again.",
        &IpSettings::address)
        .At(0x4200);
    add("GevDeviceForceSubnetMask", "Mask to give the camera.", &IpSettings::mask).At(0x4204);
    add("GevDeviceForceGateway", "Gateway to give the camera.", &IpSettings::gateway).At(0x4208);
    features
        .Command("GevDeviceForceIP",
                 "Gives the camera the address, mask and gateway above; refused while anyone "
                 "has it open.")
        .In("DeviceEnumeration")
        .Expert()
        .AvailableIf("DeviceCount")
        .SelectedBy("DeviceSelector")
        .At(0x420C)
        .Does([=] { selected()->ForceIp(*forced); })
        .DoneAtOnce();
}

}  // namespace

void AddGevInterfaceFeatures(FeatureTable& features, const std::string& id,
                             const IpSettings& adapter, const SelectedCamera& selected) {
    AddAdapter(features, id, adapter);
    AddNetwork(features, "DeviceEnumeration", selected, [](Feature& feature) {
        feature.AvailableIf("DeviceCount").SelectedBy("DeviceSelector");
    });
    AddForcedNetwork(features, selected);
}

void AddGevDeviceFeatures(FeatureTable& features, const Camera& camera) {
    AddNetwork(
        features, "DeviceInformation", [&camera] { return &camera; }, [](Feature&) {});
}

}  // namespace ZelSim
