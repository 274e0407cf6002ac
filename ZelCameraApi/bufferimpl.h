// An announced buffer.
#pragma once

#include <optional>
#include <vector>

#include "ZelCam/Buffer.h"
#include "ZelCameraApi/base/gentlinfo.h"
#include "ZelCameraApi/streamimpl.h"

namespace ZelCameraApi::Internal {

// Announced on construction, revoked on destruction. Every call asks the producer for the property;
// only the description of the image is kept. Its stream owns it.
class BufferImpl final : public ZelCam::Buffer {
  public:
    // With memory of the producer, and with memory of the application. They throw zelcam_exception
    // if the producer refuses.
    BufferImpl(StreamImpl* stream, size_t size, void* userPtr);
    BufferImpl(StreamImpl* stream, void* ptr, size_t size, void* userPtr);
    ~BufferImpl();

    BufferImpl(const BufferImpl&) = delete;
    BufferImpl& operator=(const BufferImpl&) = delete;

    ZelImageInfo* GetImage() override;
    void* GetBufferPtr() override;
    size_t GetImageOffset() override;
    size_t GetBufferSize() override;
    uint64_t GetPixelFormat() override;
    void* GetUserPtr() override;
    uint64_t GetTimestamp() override;
    uint64_t GetFrameID() override;
    bool IsIncomplete() override;
    size_t GetWidth() override;
    size_t GetHeight() override;
    size_t GetXOffset() override;
    size_t GetYOffset() override;
    size_t GetXPadding() override;
    size_t GetYPadding() override;
    size_t GetDeliveredHeight() override;
    bool IsKacFrameB() override;
    size_t GetNumParts() override;
    ZelCamErr GetPart(size_t index, ZelBufferPart* part, size_t size) override;
    ZelCamErr AttachChunks() override;
    void DetachChunks() override;

    GenTL::BUFFER_HANDLE Handle() const { return handle_; }

    // Value of a buffer info command. Throws as QueryValue.
    template <GenTL::BUFFER_INFO_CMD_LIST CMD>
    auto GetInfo() const {
        const GenTLModule<void*>& stream = stream_->Module();
        return QueryValue<CMD>([&](int cmd, int* type, void* buffer, size_t* size) {
            return stream.lib->DSGetBufferInfo(stream.handle, handle_, cmd, type, buffer, size);
        });
    }

  private:
    ZelImageInfo DescribeImage();
    bool HasUnlistedParts() const;
    std::vector<ZelBufferPart> UnlistedParts() const;
    ZelBufferPart ListedPart(uint32_t index) const;
    ZelBufferPart FindPart(uint32_t index) const;
    template <GenTL::BUFFER_PART_INFO_CMD_LIST CMD>
    auto GetPartInfo(uint32_t index) const;
    template <GenTL::BUFFER_PART_INFO_CMD_LIST CMD>
    auto PartInfoOrZero(uint32_t index) const;
    void BindChunks();

    StreamImpl* stream_;  // owns this
    GenTL::BUFFER_HANDLE handle_ = nullptr;
    std::optional<ZelImageInfo> image_;  // made by the first GetImage
};

}  // namespace ZelCameraApi::Internal
