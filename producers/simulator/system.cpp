#include "producers/simulator/system.h"

#include "producers/simulator/interface.h"
#include "producers/simulator/library.h"
#include "producers/simulator/placeholders.h"

namespace ZelSim {

System::System(std::shared_ptr<World> world)
    : Module(Kind::System,
             {"ZelSim", "ZelCam", "ZelCam simulated cameras", ZELSIM_VERSION, TLTypeMixedName,
              "TLSystem", "TLPort"},
             OwnRegisters()),
      world_(std::move(world)),
      interfaces_(world_->Interfaces()) {}

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
