#include "producers/server/modules/system.h"

#include "producers/server/base/waitpoint.h"
#include "producers/server/modules/infos.h"
#include "producers/server/modules/infosource.h"
#include "producers/server/modules/interface.h"
#include "producers/server/registers/transporttype.h"

namespace ZelCti {

namespace {

constexpr LocalDescription kSystemDescription{"System", "Features of the producer", '1'};

constexpr size_t kPathSize = 1024;

PortIdentity SystemIdentity() {
    const ProducerInfo& info = GetProducerInfo();
    PortIdentity port;
    port.id = info.id;
    port.vendor = info.vendor;
    port.model = info.model;
    port.version = info.version;
    port.tlType = TLTypeMixedName;
    port.module = "TLSystem";
    port.portName = "TLPort";
    return port;
}

// The interfaces of all transports, in the order of the transports. The list of a single transport
// stays the same object.
std::shared_ptr<const InterfaceList> InterfacesOf(const TransportList& transports) {
    if (transports.size() == 1) return transports.front()->Interfaces();
    auto all = std::make_shared<InterfaceList>();
    for (const auto& transport : transports) {
        const auto interfaces = transport->Interfaces();
        all->insert(all->end(), interfaces->begin(), interfaces->end());
    }
    return all;
}

}  // namespace

System::System(std::shared_ptr<const TransportList> transports)
    : LocalModule(Kind::System, SystemIdentity(), &kSystemDescription),
      transports_(std::move(transports)),
      interfaces_(InterfacesOf(*transports_)) {}

bool System::UpdateInterfaces(Deadline deadline) {
    for (const auto& transport : *transports_)
        transport->UpdateInterfaces(deadline);
    return interfaces_.Update(InterfacesOf(*transports_));
}

void System::AddFeatures(FeatureTable& features) {
    AddInformation(features);
    AddEnumeration(features);
}

void System::AddInformation(FeatureTable& features) {
    const auto info = [](int32_t command) { return InfoSource(command, &Library::GetInfo); };
    features.Category("SystemInformation", "What the producer is.");
    features.StringReg("TLID", "Identifier of the producer.")
        .Display("TL ID")
        .Expert()
        .At(0x2000, kTextSize)
        .Bind(info(GenTL::TL_INFO_ID));
    features.StringReg("TLVendorName", "Who made the producer.")
        .At(0x2100, kTextSize)
        .Bind(info(GenTL::TL_INFO_VENDOR));
    features.StringReg("TLModelName", "Name of the producer.")
        .At(0x2200, kTextSize)
        .Bind(info(GenTL::TL_INFO_MODEL));
    features.StringReg("TLVersion", "Version of the producer.")
        .At(0x2300, kTextSize)
        .Bind(info(GenTL::TL_INFO_VERSION));
    features.StringReg("TLFileName", "File name of the producer.")
        .Expert()
        .At(0x2400, kTextSize)
        .Bind(info(GenTL::TL_INFO_NAME));
    features.StringReg("TLDisplayName", "Name of the producer for people.")
        .Expert()
        .At(0x2500, kTextSize)
        .Bind(info(GenTL::TL_INFO_DISPLAYNAME));
    features.StringReg("TLPath", "Path of the file of the producer.")
        .Expert()
        .At(0x2800, kPathSize)
        .Bind(info(GenTL::TL_INFO_PATHNAME));
    features.Enumeration("TLType", "Transport type of the producer.")
        .At(0x2600)
        .Entries(TransportTypeEntries())
        .Get([this] { return TransportTypeNumber(Port().tlType); });
    features
        .IntReg("GenTLVersionMajor",
                "First number of the GenTL version that the producer implements.")
        .Display("GenTL Version Major")
        .Expert()
        .At(0x2604)
        .Bind(info(GenTL::TL_INFO_GENTL_VER_MAJOR));
    features
        .IntReg("GenTLVersionMinor",
                "Second number of the GenTL version that the producer implements.")
        .Display("GenTL Version Minor")
        .Expert()
        .At(0x2608)
        .Bind(info(GenTL::TL_INFO_GENTL_VER_MINOR));
    AddNamingConvention(features);
}

// The version of the standard that names the features: 1.1.0.
void System::AddNamingConvention(FeatureTable& features) {
    features
        .Integer("GenTLSFNCVersionMajor",
                 "First number of the version of the naming convention that the features "
                 "follow.")
        .Display("GenTL SFNC Version Major")
        .Expert()
        .Constant(1);
    features
        .Integer("GenTLSFNCVersionMinor",
                 "Second number of the version of the naming convention that the features "
                 "follow.")
        .Display("GenTL SFNC Version Minor")
        .Expert()
        .Constant(1);
    features
        .Integer("GenTLSFNCVersionSubMinor",
                 "Third number of the version of the naming convention that the features "
                 "follow.")
        .Display("GenTL SFNC Version Sub Minor")
        .Expert()
        .Constant(0);
}

void System::AddEnumeration(FeatureTable& features) {
    const auto info = [this](int32_t command) {
        return InfoSource(command,
                          [this](Answer answer) { AnswerInfo(*selected_.Item(), answer); });
    };
    features.Category("InterfaceEnumeration", "The interfaces that the producer lists.");
    features.Command("InterfaceUpdateList", "Updates the list of the interfaces.")
        .Expert()
        .At(0x3000)
        .Does([this] { UpdateInterfaces(WaitPoint::After(kUpdateMs)); })
        .DoneAtOnce();
    selected_.AddTo(features, "Interface", "Index of the interface that the features below show.",
                    0x3004);
    features.StringReg("InterfaceID", "Identifier of the interface.")
        .AvailableIf("InterfaceCount")
        .SelectedBy("InterfaceSelector")
        .At(0x3100, kTextSize)
        .Bind(info(GenTL::INTERFACE_INFO_ID));
    features.StringReg("InterfaceDisplayName", "Name of the interface for people.")
        .Expert()
        .AvailableIf("InterfaceCount")
        .SelectedBy("InterfaceSelector")
        .At(0x3200, kTextSize)
        .Bind(info(GenTL::INTERFACE_INFO_DISPLAYNAME));
    features.Enumeration("InterfaceType", "Transport type of the interface.")
        .AvailableIf("InterfaceCount")
        .SelectedBy("InterfaceSelector")
        .At(0x300C)
        .Entries(TransportTypeEntries())
        .Get([this] { return TransportTypeNumber(selected_.Item()->Info().tlType); });
}

Handle System::OpenInterface(const std::shared_ptr<System>& system, const char* id) {
    const std::shared_ptr<HostInterface> host = system->interfaces_.Find(id);
    Claim claim = system->opened_.Take(host->Id());
    const auto interface = std::make_shared<Interface>(host, system->GetHandle(), std::move(claim));
    return Library::Instance().Handles().Open(interface, system);
}

}  // namespace ZelCti
