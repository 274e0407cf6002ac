// The frames of a camera as an iterator of Python.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

#include "python/bindings.h"
#include "zel/camera.h"
#include "zel/frame.h"

namespace ZelPython {

class FramesObject {
  public:
    FramesObject(zel::Camera& camera, const zel::FrameOptions& options);

    // Raises StopIteration after the last frame, and stops the camera.
    Owned<zel::Frame> Next();

    // None after the last frame. The camera is not stopped: frames that were fetched are still
    // used.
    Owned<zel::Frame> Fetch();

    void Cancel() { frames_.cancel(); }
    void Stop() { frames_.stop(); }
    uint64_t NumUnderrun() const { return frames_.numUnderrun(); }

  private:
    void WarnOfStarvation();

    const size_t numBuffers_;
    zel::Frames frames_;
    uint64_t numLost_ = 0;
    std::chrono::steady_clock::time_point lookedAt_;
};

}  // namespace ZelPython
