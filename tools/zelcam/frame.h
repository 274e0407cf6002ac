// Frames, as long as somebody needs them.
#ifndef ZELCAM_TOOLS_ZELCAM_FRAME_H
#define ZELCAM_TOOLS_ZELCAM_FRAME_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "tools/imaging/decode.h"

// What the buffer of a frame holds. The image in it is that of the buffer: it is valid until the
// buffer is queued again.
struct Frame {
    explicit Frame(ZelCam::Buffer& buffer);

    Imaging::RawImage image;
    uint64_t frameId;
    uint64_t timestamp;
    size_t xOffset;
    size_t yOffset;
    bool incomplete;

    // Bytes of the image that are in the buffer, fewer than the geometry asks for if it is too
    // small; the whole buffer for formats whose geometry is not known.
    size_t BytesPresent() const;
};

// A frame with an image of its own, for when the buffer is filled again.
class StoredFrame {
  public:
    explicit StoredFrame(const Frame& frame);
    StoredFrame(StoredFrame&&) = default;
    StoredFrame& operator=(StoredFrame&&) = default;

    const Frame& Get() const { return frame_; }

  private:
    std::vector<uint8_t> bytes_;
    Frame frame_;  // whose image lies in bytes_
};

#endif  // ZELCAM_TOOLS_ZELCAM_FRAME_H
