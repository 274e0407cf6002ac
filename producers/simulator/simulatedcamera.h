// A simulated camera as the server side sees it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "producers/server/registers/portregisters.h"
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/camerafeatures.h"
#include "producers/transport.h"

namespace ZelSim {

// The hardware with its features and their description; every connection works with the same
// object. Thread-safe.
class SimulatedCamera final : public ZelCti::Camera,
                              public std::enable_shared_from_this<SimulatedCamera> {
  public:
    // What surrounds the camera; each function may be empty.
    struct Surroundings {
        // Puts registers into the space before those of the features, which need none of the
        // addresses below 0xA000 when the camera is on a network. Called when the registers are
        // first used, and again in another space if that failed.
        std::function<void(ZelCti::RegisterSpace&)> addRegisters;

        // A client wants the camera to lose its power for a moment. The function takes its Memory,
        // sees to it that another camera with this memory comes in its place, and unplugs it (which
        // happens without the function). Called with the register space locked: it must not wait.
        std::function<void(SimulatedCamera&)> powerCycle;
    };

    SimulatedCamera(const CameraConfig& config, const std::string& tlType,
                    Surroundings surroundings = {});
    SimulatedCamera(CameraConfig config, const std::string& tlType, Surroundings surroundings,
                    PermanentMemory memory);

    ZelSim::Camera& Hardware() { return hardware_; }

    // What it would remember if it lost its power now. Locks the register space.
    PermanentMemory Memory();

    // The port of the camera.
    ZelCti::PortRegisters& Registers() { return registers_; }

    const ZelCti::CameraInfo& Info() const override { return info_; }
    std::string UserName() const override { return hardware_.UserName(); }
    std::optional<ZelCti::CameraNetwork> Network() const override;
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const override;
    std::unique_ptr<ZelCti::Connection> Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                             ZelCti::CameraSink& sink) override;

  private:
    void CyclePower();
    std::unique_ptr<const ZelCti::Description> MakeRegisters(ZelCti::RegisterSpace& space);

    const ZelCti::CameraInfo info_;
    const Surroundings surroundings_;
    ZelSim::Camera hardware_;
    std::unique_ptr<CameraFeatures> features_;  // since the registers are made
    ZelCti::PortRegisters registers_;
};

}  // namespace ZelSim
