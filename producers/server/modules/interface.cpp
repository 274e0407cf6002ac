#include "producers/server/modules/interface.h"

#include "producers/server/base/waitpoint.h"
#include "producers/server/modules/device.h"
#include "producers/server/modules/devicefeatures.h"
#include "producers/server/modules/infosource.h"
#include "producers/server/modules/library.h"
#include "producers/server/registers/transporttype.h"

namespace ZelCti {

namespace {

constexpr LocalDescription kInterfaceDescription{"Interface", "Features of an interface", '2'};

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
    : LocalModule(Kind::Interface, InterfaceIdentity(host->Info()), &kInterfaceDescription),
      host_(std::move(host)),
      client_(client),
      claim_(std::move(claim)),
      hasList_(host_->HasSearched()),
      cameras_(host_->Cameras()) {}

Snapshot<Camera>& Interface::Cameras() {
    const std::lock_guard lock(firstMutex_);
    if (hasList_) return cameras_;
    if (!host_->HasSearched()) host_->UpdateCameras(WaitPoint::After(kUpdateMs));
    cameras_.Show(host_->Cameras());
    hasList_ = true;
    return cameras_;
}

bool Interface::UpdateCameras(Deadline deadline) {
    host_->UpdateCameras(deadline);
    {
        const std::lock_guard lock(firstMutex_);
        hasList_ = true;
    }
    return cameras_.Update(host_->Cameras());
}

void Interface::AddFeatures(FeatureTable& features) {
    AddInformation(features);
    AddEnumeration(features);
    host_->AddFeatures(features, [this] { return selected_.Item(); });
}

void Interface::AddInformation(FeatureTable& features) {
    const auto info = [this](int32_t command) {
        return InfoSource(command, [this](Answer answer) { GetInfo(answer); });
    };
    features.Category("InterfaceInformation", "What the interface is.");
    features.StringReg("InterfaceID", "Identifier of the interface.")
        .At(0x2000, kTextSize)
        .Bind(info(GenTL::INTERFACE_INFO_ID));
    features.StringReg("InterfaceDisplayName", "Name of the interface for people.")
        .Expert()
        .At(0x2100, kTextSize)
        .Bind(info(GenTL::INTERFACE_INFO_DISPLAYNAME));
    features.Enumeration("InterfaceType", "Transport type of the interface.")
        .At(0x2200)
        .Entries(TransportTypeEntries())
        .Get([this] { return TransportTypeNumber(host_->Info().tlType); });
}

void Interface::AddEnumeration(FeatureTable& features) {
    ShownCamera selected;
    selected.getInfo = [this](Answer answer) { AnswerInfo(*selected_.Item(), client_, answer); };
    selected.trait = [](Feature& feature) {
        feature.AvailableIf("DeviceCount").SelectedBy("DeviceSelector");
    };
    features.Category("DeviceEnumeration", "The cameras that the interface lists.");
    features.Command("DeviceUpdateList", "Updates the list of the cameras.")
        .Expert()
        .At(0x3000)
        .Does([this] { UpdateCameras(WaitPoint::After(kUpdateMs)); })
        .DoneAtOnce();
    selected_.AddTo(features, "Device",
                    "Index of the camera that the features below show, in the order of the "
                    "list of the producer.",
                    0x3004);
    AddDeviceIdentity(features, selected, 0x3100);
    AddDeviceAccessStatus(features, selected, "How the camera can be opened, or is open.", 0x300C);
    features
        .StringReg("DeviceAccessReason",
                   "Why the camera cannot be opened for everything, and what helps, as far as it "
                   "is known.")
        .Expert()
        .At(0x3700, kTextSize)
        .Bind(InfoSource(kInfoAccessReason, selected.getInfo))
        .Apply(selected.trait);
}

void Interface::GetDeviceInfo(const char* id, Answer answer) {
    AnswerInfo(*Cameras().Find(id), client_, answer);
}

Handle Interface::OpenDevice(const std::shared_ptr<Interface>& interface, const char* id,
                             GenTL::DEVICE_ACCESS_FLAGS access) {
    const std::shared_ptr<Camera> camera = interface->Cameras().Find(id);
    const auto device = std::make_shared<Device>(camera, access, interface->client_);
    return Library::Instance().Handles().Open(device, interface);
}

}  // namespace ZelCti
