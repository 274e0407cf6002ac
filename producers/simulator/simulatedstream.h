// Streams of simulated cameras.
#pragma once

#include <memory>

#include "producers/simulator/simulatedcamera.h"
#include "producers/transport.h"

namespace ZelSim {

// All streams of a camera carry the same frames. Each one has a receiver of them.
class SimulatedStream final : public ZelCti::StreamEngine {
  public:
    SimulatedStream(std::shared_ptr<SimulatedCamera> camera, ZelCti::BufferQueue& buffers);

    const ZelCti::StreamInfo& Info() const override { return info_; }
    size_t PayloadSize() const override;
    void Start(uint64_t numFrames) override { Source().Attach(receiver_, numFrames); }
    void Stop(bool kill) override { Source().Detach(receiver_, kill); }
    void Kill() noexcept override { Source().Kill(receiver_); }
    bool IsGrabbing() const noexcept override { return receiver_.IsGrabbing(); }
    void OnInput() noexcept override { Source().OnInput(); }

  private:
    Acquisition& Source() { return camera_->Hardware().GetAcquisition(); }

    const std::shared_ptr<SimulatedCamera> camera_;
    const ZelCti::StreamInfo info_;
    Receiver receiver_;
};

}  // namespace ZelSim
