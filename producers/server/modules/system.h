// System modules.
#pragma once

#include <memory>

#include "producers/server/base/claim.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/localmodule.h"
#include "producers/server/modules/selector.h"
#include "producers/server/modules/snapshot.h"

namespace ZelCti {

// What TLOpen gives: one client's view of the interfaces of all transports. Thread-safe.
class System final : public LocalModule {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::System; }

    explicit System(std::shared_ptr<const TransportList> transports);

    Snapshot<HostInterface>& Interfaces() { return interfaces_; }
    bool UpdateInterfaces(Deadline deadline);

    static Handle OpenInterface(const std::shared_ptr<System>& system, const char* id);

  private:
    void AddFeatures(FeatureTable& features) override;
    void AddInformation(FeatureTable& features);
    void AddNamingConvention(FeatureTable& features);
    void AddEnumeration(FeatureTable& features);

    const std::shared_ptr<const TransportList> transports_;
    Snapshot<HostInterface> interfaces_;
    Selector<HostInterface> selected_{interfaces_};
    ClaimedIds opened_;
};

}  // namespace ZelCti
