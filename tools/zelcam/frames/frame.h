// Frames with their images.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "ZelImage/ZelImage.h"

namespace ZelTool {

// The contents of a buffer. The image points into the buffer and is valid until the buffer is
// queued again.
struct Frame {
    ZelImage::View image;
    uint64_t frameId;
    uint64_t timestamp;
    size_t xOffset;
    size_t yOffset;
    bool incomplete;
    size_t linePadding = 0;  // bytes after each line

    // The number of image bytes in the buffer: fewer than the geometry needs if the buffer is too
    // small, and the whole buffer for an unknown pixel format.
    size_t BytesPresent() const;
};

Frame FrameIn(ZelCam::Buffer& buffer);

// "0x01080001".
std::string PixelFormatNumber(uint64_t value);

// The name of the format, or its number when it is not known.
std::string PixelFormatName(uint64_t value);

// What the features of a camera say of its images, for payloads that do not say it themselves:
// early GigE cameras send chunk data so. Frames come with one setting, so the features are read
// once.
class DescribedImage {
  public:
    // `features` must outlive this object; null for a camera without a description.
    explicit DescribedImage(ZelGenParam::Array* features) : features_(features) {}

    // The frame with its dimensions, if it has none and its bytes are enough for them.
    Frame Complete(Frame frame);

  private:
    ZelImage::View Read() const;

    ZelGenParam::Array* const features_;
    std::optional<ZelImage::View> image_;  // without bytes
};

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
