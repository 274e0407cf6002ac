#include "producers/server/modules/interface.h"

#include "producers/server/base/waitpoint.h"
#include "producers/server/modules/device.h"
#include "producers/server/modules/devicefeatures.h"
#include "producers/server/modules/infosource.h"
#include "producers/server/modules/library.h"
#include "producers/server/registers/transporttype.h"

namespace ZelCti {

namespace {

PortIdentity InterfaceIdentity(const InterfaceInfo& info) {
    PortIdentity port;
    port.id = info.id;
    port.vendor = info.vendor;
    port.model = info.model;
    port.version = info.version;
    port.tlType = info.tlType;
    port.module = "TLInterface";
    port.portName = "InterfacePort";
    return port;
}

}  // namespace

Interface::Interface(std::shared_ptr<HostInterface> host, Handle client, Claim claim)
    : LocalModule(Kind::Interface, InterfaceIdentity(host->Info())),
      host_(std::move(host)),
      client_(client),
      claim_(std::move(claim)),
      cameras_(host_->Cameras()) {
    AddInformation();
    AddEnumeration();
    host_->AddFeatures(features_, [this] { return selected_.Item(); });
    features_.Complete();
}

bool Interface::UpdateCameras(Deadline deadline) {
    host_->UpdateCameras(deadline);
    return cameras_.Update(host_->Cameras());
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
        .Get([this] { return TransportTypeNumber(host_->Info().tlType); });
}

void Interface::AddEnumeration() {
    ShownCamera selected;
    selected.getInfo = [this](Answer answer) { AnswerInfo(*selected_.Item(), client_, answer); };
    selected.trait = [](Feature& feature) {
        feature.AvailableIf("DeviceCount").SelectedBy("DeviceSelector");
    };
    features_.Category("DeviceEnumeration", "The cameras that the interface lists.");
    features_.Command("DeviceUpdateList", "Updates the list of the cameras.")
        .Expert()
        .At(0x3000)
        .Does([this] { UpdateCameras(WaitPoint::After(kUpdateMs)); })
        .DoneAtOnce();
    selected_.AddTo(features_, "Device",
                    "Index of the camera that the features below tell about, in the order of the "
                    "list of the producer.",
                    0x3004);
    AddDeviceIdentity(features_, selected, 0x3100);
    AddDeviceAccessStatus(features_, selected, "How the camera can be opened, or is open.", 0x300C);
}

void Interface::GetDeviceInfo(const char* id, Answer answer) const {
    AnswerInfo(*cameras_.Find(id), client_, answer);
}

Handle Interface::OpenDevice(const std::shared_ptr<Interface>& interface, const char* id,
                             GenTL::DEVICE_ACCESS_FLAGS access) {
    const std::shared_ptr<Camera> camera = interface->cameras_.Find(id);
    const auto device = std::make_shared<Device>(camera, access, interface->client_);
    return Library::Instance().Handles().Open(device, interface);
}

std::unique_ptr<const Description> Interface::MakeDescription() const {
    DescriptionHeader header;
    header.modelName = "Interface";
    header.toolTip = "Features of an interface";
    header.productGuid = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D20";
    header.versionGuid = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D2F";
    return MakeDescriptionOf(features_, header, Description::Form::Xml);
}

}  // namespace ZelCti
