// Open simulated cameras.
#pragma once

#include <memory>
#include <vector>

#include "producers/simulator/simulatedcamera.h"
#include "producers/transport.h"

namespace ZelSim {

// One client's use of a simulated camera. Thread-safe.
class SimulatedConnection final : public ZelCti::Connection {
  public:
    SimulatedConnection(std::shared_ptr<SimulatedCamera> camera, GenTL::DEVICE_ACCESS_FLAGS access,
                        ZelCti::CameraSink& sink);

    void Read(uint64_t address, void* buffer, size_t size) override;
    void Write(uint64_t address, const void* buffer, size_t size) override;
    std::vector<ZelCti::PortUrl> DescriptionUrls() override;
    uint32_t NumStreams() const override { return camera_->Hardware().Config().streams; }
    std::unique_ptr<ZelCti::StreamEngine> OpenStream(uint32_t index,
                                                     ZelCti::BufferQueue& buffers) override;
    void AddFeatures(ZelCti::FeatureTable& features) override;
    void Close() noexcept override;

  private:
    const std::shared_ptr<SimulatedCamera> camera_;
    // Taken first: the loss of the camera is either reported, or seen when it is connected.
    ZelCti::Claim subscription_;
    ZelCti::Claim connected_;
};

}  // namespace ZelSim
