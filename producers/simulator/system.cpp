#include "producers/simulator/system.h"

#include "producers/simulator/interface.h"
#include "producers/simulator/library.h"
#include "producers/simulator/localregisters.h"
#include "producers/simulator/placeholders.h"
#include "producers/simulator/transporttype.h"

namespace ZelSim {

System::System(std::shared_ptr<World> world)
    : Module(Kind::System,
             {"ZelCTI", "ZelCam", "ZelCam GenTL producer", ZELSIM_VERSION, TLTypeMixedName,
              "TLSystem", "TLPort"},
             OwnRegisters()),
      world_(std::move(world)),
      interfaces_(world_->Interfaces()) {
    AddInformation();
    AddEnumeration();
}

// The registers stand in descriptions/system.xml as well.
void System::AddInformation() {
    AddInfos(Registers(),
             {{0x2000, kTextSize, GenTL::TL_INFO_ID},
              {0x2100, kTextSize, GenTL::TL_INFO_VENDOR},
              {0x2200, kTextSize, GenTL::TL_INFO_MODEL},
              {0x2300, kTextSize, GenTL::TL_INFO_VERSION},
              {0x2400, kTextSize, GenTL::TL_INFO_NAME},
              {0x2500, kTextSize, GenTL::TL_INFO_DISPLAYNAME},
              {0x2604, 4, GenTL::TL_INFO_GENTL_VER_MAJOR},
              {0x2608, 4, GenTL::TL_INFO_GENTL_VER_MINOR},
              {0x2800, 1024, GenTL::TL_INFO_PATHNAME}},
             &Library::GetInfo);
    AddNumber(Registers(), 0x2600, 4, [this] { return TransportTypeNumber(Port().tlType); });
}

void System::AddEnumeration() {
    AddCommand(Registers(), 0x3000, [this] { UpdateInterfaces(); });
    selected_.AddTo(Registers(), 0x3004, 0x3008);
    AddInfos(Registers(),
             {{0x3100, kTextSize, GenTL::INTERFACE_INFO_ID},
              {0x3200, kTextSize, GenTL::INTERFACE_INFO_DISPLAYNAME}},
             [this](Answer answer) { selected_.Item()->GetInfo(answer); });
    AddNumber(Registers(), 0x300C, 4,
              [this] { return TransportTypeNumber(selected_.Item()->Config().type); });
}

Handle System::OpenInterface(const std::shared_ptr<System>& system, const char* id) {
    const std::shared_ptr<HostInterface> host = system->interfaces_.Find(id);
    Claim claim = system->opened_.Take(host->Id());
    const auto interface = std::make_shared<Interface>(host, system->GetHandle(), std::move(claim));
    return Library::Instance().Handles().Open(interface, system);
}

std::unique_ptr<const Description> System::MakeDescription() const {
    return std::make_unique<Description>("ZelSim_System", Placeholders().FillIn("system.xml"),
                                         Description::Form::Xml);
}

}  // namespace ZelSim
