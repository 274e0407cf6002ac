#include "tools/zelcam/frames/frame.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace ZelTool {

namespace {

// An image with the bytes after each of its lines.
struct PaddedImage {
    ZelImage::View view{};
    size_t linePadding = 0;

    void SetLines(size_t deliveredHeight, size_t padding) {
        // Cameras with a variable height may fill fewer lines.
        if (deliveredHeight > 0) view.height = std::min(view.height, deliveredHeight);
        linePadding = padding;
        if (padding > 0)
            view.linePitch = ZelImage::LineBytes(view.pixelFormat, view.width) + padding;
    }
};

// The first part of a payload, such as the picture of a 3D camera; nothing of one without parts.
std::optional<PaddedImage> FirstPartIn(ZelCam::Buffer& buffer) {
    ZelBufferPart part{};
    if (buffer.GetPart(0, &part, sizeof part) != ZelCamErr_Success) return std::nullopt;
    PaddedImage image{{part.data, part.size, part.format, part.width, part.height, 0}, 0};
    image.SetLines(part.deliveredHeight, part.xPadding);
    return image;
}

PaddedImage ImageIn(ZelCam::Buffer& buffer) {
    const size_t size = buffer.GetBufferSize();
    const size_t offset = std::min(buffer.GetImageOffset(), size);
    const auto* base = static_cast<const uint8_t*>(buffer.GetBufferPtr());
    PaddedImage image{
        {base == nullptr ? nullptr : base + offset, base == nullptr ? 0 : size - offset,
         buffer.GetPixelFormat(), buffer.GetWidth(), buffer.GetHeight(), 0},
        0};
    image.SetLines(buffer.GetDeliveredHeight(), buffer.GetXPadding());
    return image;
}

}  // namespace

Frame FrameIn(ZelCam::Buffer& buffer) {
    PaddedImage image = ImageIn(buffer);
    if (image.view.width == 0) image = FirstPartIn(buffer).value_or(image);
    return {image.view,          buffer.GetFrameID(),   buffer.GetTimestamp(), buffer.GetXOffset(),
            buffer.GetYOffset(), buffer.IsIncomplete(), image.linePadding};
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
