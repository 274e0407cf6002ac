#include "producers/simulator/simulatedstream.h"

#include "producers/simulator/zelsim.h"

namespace ZelSim {

namespace {

static_assert(Acquisition::kNiceness == ZELSIM_NICENESS, "zelsim.h says so");

ZelCti::StreamInfo StreamInfoOf(const CameraConfig& config) {
    ZelCti::StreamInfo info;
    info.definesPayloadSize = config.definesPayloadSize;
    info.sendsPairs = config.framePairs;
    info.minBuffers = config.bufAnnounceMin;
    info.alignment = config.bufAlignment;
    info.maxChunks = kNumChunkKinds;
    if (config.payload != PayloadForm::Image) info.maxParts = kNumComponents + 1;
    return info;
}

}  // namespace

SimulatedStream::SimulatedStream(std::shared_ptr<SimulatedCamera> camera,
                                 ZelCti::BufferQueue& buffers)
    : camera_(std::move(camera)),
      info_(StreamInfoOf(camera_->Hardware().Config())),
      receiver_(buffers) {}

size_t SimulatedStream::PayloadSize() const {
    return static_cast<size_t>(camera_->Hardware().Settings()->PayloadSize());
}

}  // namespace ZelSim
