// System modules.
#pragma once

#include <memory>

#include "producers/server/base/claim.h"
#include "producers/server/modules/module.h"
#include "producers/server/modules/selector.h"
#include "producers/server/modules/snapshot.h"
#include "producers/server/registers/featuretable.h"
#include "producers/simulator/hostinterface.h"
#include "producers/simulator/world.h"

namespace ZelSim {

// What TLOpen gives: one client's view of the world. Thread-safe.
class System final : public Module {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::System; }

    explicit System(std::shared_ptr<World> world);

    Snapshot<HostInterface>& Interfaces() { return interfaces_; }
    bool UpdateInterfaces() { return interfaces_.Update(world_->Interfaces()); }

    static Handle OpenInterface(const std::shared_ptr<System>& system, const char* id);

  private:
    std::unique_ptr<const Description> MakeDescription() const override;
    void AddInformation();
    void AddNamingConvention();
    void AddEnumeration();

    const std::shared_ptr<World> world_;
    Snapshot<HostInterface> interfaces_;
    Selector<HostInterface> selected_{interfaces_};
    FeatureTable features_{Registers(), Port().portName, Caching::Off};
    ClaimedIds opened_;
};

}  // namespace ZelSim
