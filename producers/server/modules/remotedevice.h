// The remote side of an open camera.
#pragma once

#include <memory>

#include "producers/server/modules/module.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/cameradescription.h"

namespace ZelSim {

// The port of the camera itself, which DevGetPort gives: its registers are those of the camera,
// whoever has it open. It has no events; those of the camera come through the device module.
// Thread-safe.
class RemoteDevice final : public Module {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::RemoteDevice; }

    RemoteDevice(std::shared_ptr<Camera> camera, bool mayWrite);

    const Camera* GetCamera() const override { return camera_.get(); }
    std::vector<PortUrl> Urls() const override;

  private:
    bool MayWrite() const override { return mayWrite_; }
    std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE) override { return nullptr; }

    std::unique_ptr<const Description> MakeDescription() const override {
        return MakeCameraDescription(*camera_);
    }

    const std::shared_ptr<Camera> camera_;
    const bool mayWrite_;
};

}  // namespace ZelSim
