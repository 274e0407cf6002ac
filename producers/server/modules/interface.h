// Interface modules.
#pragma once

#include <memory>

#include "producers/server/base/claim.h"
#include "producers/server/modules/module.h"
#include "producers/server/modules/selector.h"
#include "producers/server/modules/snapshot.h"
#include "producers/server/registers/featuretable.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/hostinterface.h"

namespace ZelSim {

// One client's view of an interface and of the cameras on it. Thread-safe.
class Interface final : public Module {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::Interface; }

    Interface(std::shared_ptr<HostInterface> host, Handle client, Claim claim);

    void GetInfo(Answer answer) const { host_->GetInfo(answer); }
    Snapshot<Camera>& Cameras() { return cameras_; }
    bool UpdateCameras() { return cameras_.Update(host_->Cameras()); }
    void GetDeviceInfo(const char* id, Answer answer) const;

    static Handle OpenDevice(const std::shared_ptr<Interface>& interface, const char* id,
                             GenTL::DEVICE_ACCESS_FLAGS access);

  private:
    std::unique_ptr<const Description> MakeDescription() const override;
    void OnClose() override { claim_.reset(); }

    void AddInformation();
    void AddEnumeration();
    void AddAdapter();
    void AddForcedNetwork();
    bool IsGev() const { return host_->Config().type == TLTypeGEVName; }

    const std::shared_ptr<HostInterface> host_;
    const Handle client_;  // the system module
    Claim claim_;
    Snapshot<Camera> cameras_;
    Selector<Camera> selected_{cameras_};
    IpSettings forced_;  // what the next command forces; used by registers only
    FeatureTable features_{Registers(), Port().portName, Caching::Off};
};

}  // namespace ZelSim
