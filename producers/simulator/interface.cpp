#include "producers/simulator/interface.h"

#include "producers/simulator/device.h"
#include "producers/simulator/library.h"
#include "producers/simulator/localregisters.h"
#include "producers/simulator/placeholders.h"
#include "producers/simulator/transporttype.h"
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
    if (host_->Config().type == TLTypeGEVName) AddNetwork();
}

// The registers stand in descriptions/interface.xml as well.
void Interface::AddInformation() {
    AddInfos(Registers(),
             {{0x2000, kTextSize, GenTL::INTERFACE_INFO_ID},
              {0x2100, kTextSize, GenTL::INTERFACE_INFO_DISPLAYNAME}},
             [this](Answer answer) { GetInfo(answer); });
    AddNumber(Registers(), 0x2200, 4, [this] { return TransportTypeNumber(host_->Config().type); });
}

void Interface::AddEnumeration() {
    AddCommand(Registers(), 0x3000, [this] { UpdateCameras(); });
    selected_.AddTo(Registers(), 0x3004, 0x3008);
    AddInfos(Registers(),
             {{0x300C, 4, GenTL::DEVICE_INFO_ACCESS_STATUS},
              {0x3100, kTextSize, GenTL::DEVICE_INFO_ID},
              {0x3200, kTextSize, GenTL::DEVICE_INFO_VENDOR},
              {0x3300, kTextSize, GenTL::DEVICE_INFO_MODEL},
              {0x3400, kTextSize, GenTL::DEVICE_INFO_SERIAL_NUMBER},
              {0x3500, kTextSize, GenTL::DEVICE_INFO_USER_DEFINED_NAME},
              {0x3600, kTextSize, GenTL::DEVICE_INFO_VERSION}},
             [this](Answer answer) { selected_.Item()->GetInfo(answer, client_); });
}

// These stand in descriptions/interfacegev.xml.
void Interface::AddNetwork() {
    RegisterSpace& registers = Registers();
    AddNumber(registers, 0x4000, 8, [this] { return MacAddressOf(Id()); });
    AddNumber(registers, 0x4008, 4, [this] { return host_->Ip().address; });
    AddNumber(registers, 0x400C, 4, [this] { return host_->Ip().mask; });
    AddNumber(registers, 0x4010, 4, [this] { return host_->Ip().gateway; });

    AddNumber(registers, 0x4100, 8, [this] { return MacAddressOf(selected_.Item()->Id()); });
    AddNumber(registers, 0x4108, 4, [this] { return selected_.Item()->Ip().address; });
    AddNumber(registers, 0x410C, 4, [this] { return selected_.Item()->Ip().mask; });
    AddNumber(registers, 0x4110, 4, [this] { return selected_.Item()->Ip().gateway; });

    const auto addForced = [&](uint64_t address, uint32_t& value) {
        registers.Add(RegisterSpace::Integer{
            address, 4, Access::ReadWrite, [&value] { return value; }, nullptr,
            [&value](uint64_t number) { value = static_cast<uint32_t>(number); }});
    };
    addForced(0x4200, forced_.address);
    addForced(0x4204, forced_.mask);
    addForced(0x4208, forced_.gateway);
    AddCommand(registers, 0x420C, [this] { selected_.Item()->ForceIp(forced_); });
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
    Placeholders values;
    values.Xml("GEV_INFORMATION", "");
    values.Xml("GEV_ENUMERATION", "");
    values.Xml("GEV_SELECTED", "");
    values.Xml("GEV_FEATURES", "");
    if (host_->Config().type == TLTypeGEVName) {
        values.List("GEV_INFORMATION", "pFeature",
                    {"GevInterfaceMACAddress", "GevInterfaceGatewaySelector", "GevInterfaceGateway",
                     "GevInterfaceSubnetSelector", "GevInterfaceSubnetIPAddress",
                     "GevInterfaceSubnetMask"});
        values.List("GEV_ENUMERATION", "pFeature",
                    {"GevDeviceMACAddress", "GevDeviceIPAddress", "GevDeviceSubnetMask",
                     "GevDeviceGateway", "GevDeviceForceIPAddress", "GevDeviceForceSubnetMask",
                     "GevDeviceForceGateway", "GevDeviceForceIP"});
        values.List("GEV_SELECTED", "pSelected",
                    {"GevDeviceMACAddress", "GevDeviceIPAddress", "GevDeviceSubnetMask",
                     "GevDeviceGateway", "GevDeviceForceIP"});
        values.Xml("GEV_FEATURES", "@interfacegev.xml@");
    }
    return std::make_unique<Description>("ZelSim_Interface", values.FillIn("interface.xml"),
                                         Description::Form::Xml);
}

}  // namespace ZelSim
