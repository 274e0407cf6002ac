#include "tools/zelcam/frames/frame.h"

#include <algorithm>

namespace ZelTool {

namespace {

// The first part of a payload, such as the picture of a 3D camera; nothing of one without parts.
std::optional<Imaging::RawImage> FirstPartIn(ZelCam::Buffer& buffer) {
    ZelBufferPart part{};
    if (buffer.GetPart(0, &part, sizeof part) != ZelCamErr_Success) return std::nullopt;
    Imaging::RawImage image{};
    image.data = static_cast<const uint8_t*>(part.data);
    image.size = part.size;
    image.pixelFormat = part.format;
    image.width = part.width;
    image.height = part.height;
    if (part.deliveredHeight > 0) image.height = std::min(part.height, part.deliveredHeight);
    image.linePadding = part.xPadding;
    return image;
}

Imaging::RawImage ImageIn(ZelCam::Buffer& buffer) {
    const size_t size = buffer.GetBufferSize();
    const size_t offset = std::min(buffer.GetImageOffset(), size);
    const auto* base = static_cast<const uint8_t*>(buffer.GetBufferPtr());
    Imaging::RawImage image{};
    image.data = base == nullptr ? nullptr : base + offset;
    image.size = base == nullptr ? 0 : size - offset;
    image.pixelFormat = buffer.GetPixelFormat();
    image.width = buffer.GetWidth();
    image.height = buffer.GetHeight();
    // Cameras with a variable height may fill fewer lines.
    const size_t delivered = buffer.GetDeliveredHeight();
    if (delivered > 0) image.height = std::min(image.height, delivered);
    image.linePadding = buffer.GetXPadding();
    return image;
}

}  // namespace

Frame FrameIn(ZelCam::Buffer& buffer) {
    Imaging::RawImage image = ImageIn(buffer);
    if (image.width == 0) image = FirstPartIn(buffer).value_or(image);
    return {image,
            buffer.GetFrameID(),
            buffer.GetTimestamp(),
            buffer.GetXOffset(),
            buffer.GetYOffset(),
            buffer.IsIncomplete()};
}

Imaging::RawImage DescribedImage::Read() const {
    Imaging::RawImage image{};
    if (features_ == nullptr) return image;
    image.width = static_cast<size_t>(features_->GetIntegerValue("Width", nullptr));
    image.height = static_cast<size_t>(features_->GetIntegerValue("Height", nullptr));
    image.pixelFormat = static_cast<uint64_t>(features_->GetEnumValue("PixelFormat", nullptr));
    return image;
}

Frame DescribedImage::Complete(Frame frame) {
    Imaging::RawImage& image = frame.image;
    if (image.width != 0 || image.height != 0 || image.pixelFormat != 0) return frame;
    if (!image_) image_ = Read();
    Imaging::RawImage described = *image_;
    described.data = image.data;
    described.size = image.size;
    const size_t wanted = described.ImageBytes();
    if (wanted != 0 && wanted <= described.size) image = described;
    return frame;
}

size_t Frame::BytesPresent() const {
    const size_t wanted = image.ImageBytes();
    return wanted == 0 ? image.size : std::min(wanted, image.size);
}

StoredFrame::StoredFrame(const Frame& frame)
    : bytes_(frame.image.data, frame.image.data + frame.BytesPresent()), frame_(frame) {
    frame_.image.data = bytes_.data();
    frame_.image.size = bytes_.size();
}

}  // namespace ZelTool
