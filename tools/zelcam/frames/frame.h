// Frames with their images.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "tools/imaging/decode.h"

namespace ZelTool {

// The contents of a buffer. The image points into the buffer and is valid until the buffer is
// queued again.
struct Frame {
    Imaging::RawImage image;
    uint64_t frameId;
    uint64_t timestamp;
    size_t xOffset;
    size_t yOffset;
    bool incomplete;

    // The number of image bytes in the buffer: fewer than the geometry needs if the buffer is too
    // small, and the whole buffer for an unknown pixel format.
    size_t BytesPresent() const;
};

Frame FrameIn(ZelCam::Buffer& buffer);

// A frame with a copy of the image, independent of the buffer.
class StoredFrame {
  public:
    explicit StoredFrame(const Frame& frame);
    StoredFrame(StoredFrame&&) = default;
    StoredFrame& operator=(StoredFrame&&) = default;

    const Frame& Get() const { return frame_; }

  private:
    std::vector<uint8_t> bytes_;
    Frame frame_;  // its image is in bytes_
};

}  // namespace ZelTool
