// Interface modules.
#pragma once

#include <memory>
#include <mutex>

#include "producers/server/base/claim.h"
#include "producers/server/modules/infos.h"
#include "producers/server/modules/localmodule.h"
#include "producers/server/modules/selector.h"
#include "producers/server/modules/snapshot.h"
#include "producers/transport.h"

namespace ZelCti {

// One client's view of an interface and of the cameras on it. Thread-safe.
class Interface final : public LocalModule {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::Interface; }

    Interface(std::shared_ptr<HostInterface> host, Handle client, Claim claim);

    void GetInfo(Answer answer) const { AnswerInfo(*host_, answer); }
    // Searches for cameras when nobody has done so yet, for about a second at most.
    Snapshot<Camera>& Cameras();
    bool UpdateCameras(Deadline deadline);
    void GetDeviceInfo(const char* id, Answer answer);

    static Handle OpenDevice(const std::shared_ptr<Interface>& interface, const char* id,
                             GenTL::DEVICE_ACCESS_FLAGS access);

  private:
    void AddFeatures(FeatureTable& features) override;
    void OnClose() noexcept override { claim_.reset(); }

    void AddInformation(FeatureTable& features);
    void AddEnumeration(FeatureTable& features);

    const std::shared_ptr<HostInterface> host_;
    const Handle client_;  // the system module
    Claim claim_;
    std::mutex firstMutex_;  // guards hasList_, and is held during a first search
    bool hasList_;
    Snapshot<Camera> cameras_;
    Selector<Camera> selected_{cameras_};
};

}  // namespace ZelCti
