#include "producers/server/modules/interface.h"

#include "producers/server/modules/device.h"
#include "producers/server/modules/devicefeatures.h"
#include "producers/server/modules/infosource.h"
#include "producers/server/modules/library.h"
#include "producers/server/registers/transporttype.h"
#include "producers/simulator/zelsim.h"

namespace ZelSim {

namespace {

PortIdentity IdentityOf(const InterfaceConfig& config) {
    return {config.id,   ZELSIM_INTERFACE_VENDOR, ZELSIM_INTERFACE_MODEL, config.version,
            config.type, "TLInterface",           "InterfacePort"};
}

}  // namespace

Interface::Interface(std::shared_ptr<HostInterface> host, Handle client, Claim claim)
    : Module(Kind::Interface, IdentityOf(host->Config()), OwnRegisters()),
      host_(std::move(host)),
      client_(client),
      claim_(std::move(claim)),
      cameras_(host_->Cameras()) {
    AddInformation();
    AddEnumeration();
    features_.Complete();
}

void Interface::AddInformation() {
    const auto info = [this](int32_t command) {
        return InfoSource(command, [this](Answer answer) { GetInfo(answer); });
    };
    features_.Category("InterfaceInformation", "What the interface is.");
    features_.StringReg("InterfaceID", "Identifier of the interface.")
        .At(0x2000, kTextSize)
        .Bind(info(GenTL::INTERFACE_INFO_ID));
    features_.StringReg("InterfaceDisplayName", "Name of the interface for people.")
        .Expert()
        .At(0x2100, kTextSize)
        .Bind(info(GenTL::INTERFACE_INFO_DISPLAYNAME));
    features_.Enumeration("InterfaceType", "Transport type of the interface.")
        .At(0x2200)
        .Entries(TransportTypeEntries())
        .Get([this] { return TransportTypeNumber(host_->Config().type); });
    if (IsGev()) AddAdapter();
}

void Interface::AddAdapter() {
    features_.IntReg("GevInterfaceMACAddress", "MAC address of the adapter.")
        .At(0x4000, 8)
        .Representation("MACAddress")
        .Get([this] { return MacAddressOf(Id()); });
    features_.Integer("GevInterfaceGatewaySelector", "Index of the gateway; the adapter has one.")
        .Expert()
        .Value(0)
        .Limits(0, 0);
    features_.IntReg("GevInterfaceGateway", "Gateway of the adapter; 0.0.0.0 is none.")
        .Expert()
        .SelectedBy("GevInterfaceGatewaySelector")
        .At(0x4010)
        .Representation("IPV4Address")
        .Get([this] { return host_->Ip().gateway; });
    features_.Integer("GevInterfaceSubnetSelector", "Index of the subnet; the adapter has one.")
        .Expert()
        .Value(0)
        .Limits(0, 0);
    features_.IntReg("GevInterfaceSubnetIPAddress", "Address of the adapter in the subnet.")
        .SelectedBy("GevInterfaceSubnetSelector")
        .At(0x4008)
        .Representation("IPV4Address")
        .Get([this] { return host_->Ip().address; });
    features_.IntReg("GevInterfaceSubnetMask", "Mask of the subnet.")
        .SelectedBy("GevInterfaceSubnetSelector")
        .At(0x400C)
        .Representation("IPV4Address")
        .Get([this] { return host_->Ip().mask; });
}

void Interface::AddEnumeration() {
    ShownCamera selected;
    selected.camera = [this] { return selected_.Item(); };
    selected.getInfo = [this](Answer answer) { selected_.Item()->GetInfo(answer, client_); };
    selected.trait = [](Feature& feature) {
        feature.AvailableIf("DeviceCount").SelectedBy("DeviceSelector");
    };
    features_.Category("DeviceEnumeration", "The cameras that the interface lists.");
    features_.Command("DeviceUpdateList", "Updates the list of the cameras.")
        .Expert()
        .At(0x3000)
        .Does([this] { UpdateCameras(); })
        .DoneAtOnce();
    selected_.AddTo(features_, "Device",
                    "Index of the camera that the features below tell about, in the order of the "
                    "list of the producer.",
                    0x3004);
    AddDeviceIdentity(features_, selected, 0x3100);
    AddDeviceAccessStatus(features_, selected, "How the camera can be opened, or is open.", 0x300C);
    if (!IsGev()) return;
    AddDeviceNetwork(features_, selected);
    AddForcedNetwork();
}

void Interface::AddForcedNetwork() {
    const auto add = [this](const char* name, const char* toolTip, uint32_t& value) -> Feature& {
        return features_.IntReg(name, toolTip)
            .Expert()
            .AvailableIf("DeviceCount")
            .Representation("IPV4Address")
            .Get([&value] { return value; })
            .Set([&value](uint64_t number) { value = static_cast<uint32_t>(number); });
    };
    add("GevDeviceForceIPAddress",
        "Address to give the camera; 0.0.0.0 gives it the settings of its configuration again.",
        forced_.address)
        .At(0x4200);
    add("GevDeviceForceSubnetMask", "Mask to give the camera.", forced_.mask).At(0x4204);
    add("GevDeviceForceGateway", "Gateway to give the camera.", forced_.gateway).At(0x4208);
    features_
        .Command("GevDeviceForceIP",
                 "Gives the camera the address, mask and gateway above; refused while anyone "
                 "has it open.")
        .Expert()
        .AvailableIf("DeviceCount")
        .SelectedBy("DeviceSelector")
        .At(0x420C)
        .Does([this] { selected_.Item()->ForceIp(forced_); })
        .DoneAtOnce();
}

void Interface::GetDeviceInfo(const char* id, Answer answer) const {
    cameras_.Find(id)->GetInfo(answer, client_);
}

Handle Interface::OpenDevice(const std::shared_ptr<Interface>& interface, const char* id,
                             GenTL::DEVICE_ACCESS_FLAGS access) {
    const std::shared_ptr<Camera> camera = interface->cameras_.Find(id);
    const auto device = std::make_shared<Device>(camera, access, interface->client_);
    return Library::Instance().Handles().Open(device, interface);
}

std::unique_ptr<const Description> Interface::MakeDescription() const {
    DescriptionHeader header;
    header.modelName = "SimulatedInterface";
    header.vendorName = "ZelCam";
    header.toolTip = "Features of a simulated interface";
    header.productGuid = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D20";
    header.versionGuid = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D2F";
    return std::make_unique<Description>("ZelSim_Interface", features_.Describe(header),
                                         Description::Form::Xml);
}

}  // namespace ZelSim
