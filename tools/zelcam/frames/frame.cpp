#include "tools/zelcam/frames/frame.h"

#include <algorithm>
#include <cstdio>

namespace ZelTool {

namespace {

ZelImage::View ImageIn(ZelCam::Buffer& buffer) {
    const size_t size = buffer.GetBufferSize();
    const size_t offset = std::min(buffer.GetImageOffset(), size);
    const auto* base = static_cast<const uint8_t*>(buffer.GetBufferPtr());
    ZelImage::View image;
    image.data = base == nullptr ? nullptr : base + offset;
    image.size = base == nullptr ? 0 : size - offset;
    image.pixelFormat = buffer.GetPixelFormat();
    image.width = buffer.GetWidth();
    image.height = buffer.GetHeight();
    // Cameras with a variable height may fill fewer lines.
    const size_t delivered = buffer.GetDeliveredHeight();
    if (delivered > 0) image.height = std::min(image.height, delivered);
    const size_t padding = buffer.GetXPadding();
    if (padding > 0)
        image.linePitch = ZelImage::LineBytes(image.pixelFormat, image.width) + padding;
    return image;
}

}  // namespace

Frame FrameIn(ZelCam::Buffer& buffer) {
    return {ImageIn(buffer),     buffer.GetFrameID(),   buffer.GetTimestamp(), buffer.GetXOffset(),
            buffer.GetYOffset(), buffer.IsIncomplete(), buffer.GetXPadding()};
}

ZelImage::View DescribedImage::Read() const {
    ZelImage::View image;
    if (features_ == nullptr) return image;
    image.width = static_cast<size_t>(features_->GetIntegerValue("Width", nullptr));
    image.height = static_cast<size_t>(features_->GetIntegerValue("Height", nullptr));
    image.pixelFormat = static_cast<uint64_t>(features_->GetEnumValue("PixelFormat", nullptr));
    return image;
}

Frame DescribedImage::Complete(Frame frame) {
    ZelImage::View& image = frame.image;
    if (image.width != 0 || image.height != 0 || image.pixelFormat != 0) return frame;
    if (!image_) image_ = Read();
    ZelImage::View described = *image_;
    described.data = image.data;
    described.size = image.size;
    const size_t wanted = ZelImage::ImageSize(described);
    if (wanted != 0 && wanted <= described.size) image = described;
    return frame;
}

std::string PixelFormatNumber(uint64_t value) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%08llX", static_cast<unsigned long long>(value));
    return text;
}

std::string PixelFormatName(uint64_t value) {
    const char* const name = ZelImage::FormatName(value);
    return name == nullptr ? PixelFormatNumber(value) : name;
}

size_t Frame::BytesPresent() const {
    const size_t wanted = ZelImage::ImageSize(image);
    return wanted == 0 ? image.size : std::min(wanted, image.size);
}

StoredFrame::StoredFrame(const Frame& frame)
    : bytes_(static_cast<const uint8_t*>(frame.image.data),
             static_cast<const uint8_t*>(frame.image.data) + frame.BytesPresent()),
      frame_(frame) {
    frame_.image.data = bytes_.data();
    frame_.image.size = bytes_.size();
}

}  // namespace ZelTool
