// An opened data stream.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "ZelCam/Stream.h"
#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "ZelCameraApi/base/gentlinfo.h"
#include "ZelCameraApi/eventsource.h"

namespace ZelCameraApi::Internal {

class BufferImpl;
class DeviceImpl;

// One data stream with its buffers, in the order in which they were announced. It stores no state
// of the acquisition: the producer knows whether the stream is grabbing and where each buffer is.
// Its device owns it.
class StreamImpl final : public EventSource<ZelCam::Stream> {
  public:
    // Opens the stream. Throws zelcam_exception if the producer refuses. If only the new-buffer
    // event cannot be registered, GetBuffer will fail with the producer's code.
    StreamImpl(DeviceImpl* device, const std::string& id);
    ~StreamImpl();

    void Release() override;
    ZelCam::Buffer* CreateBuffer(size_t size, void* userPtr, ZelCamErr* err) override;
    ZelCam::Buffer* SetBuffer(void* ptr, size_t size, void* userPtr, ZelCamErr* err) override;
    ZelCamErr RevokeBuffer(ZelCam::Buffer* buffer) override;
    ZelCamErr QueueBuffer(ZelCam::Buffer* buffer) override;
    ZelCam::Buffer* GetBuffer(uint64_t timeout, ZelCamErr* err) override;
    ZelCamErr CancelBuffer() override;
    ZelCamErr FlushBuffers(ZelCam::FlushOperation op) override;
    ZelCamErr StartAcquisition(uint64_t count, uint32_t flags) override;
    ZelCamErr StopAcquisition(uint32_t flags) override;
    ZelCamErr AllocBufferQueue(void* userPtr, size_t count) override;
    ZelCamErr ReleaseBufferQueue() override;
    size_t GetBufferQueueSize() override;
    ZelGenParam::Array* GetParameters(ZelCamErr* err) override;
    uint64_t GetNumDelivered() override;
    uint64_t GetNumUnderrun() override;
    uint64_t GetNumAnnounced() override;
    uint64_t GetNumQueued() override;
    uint64_t GetNumAwaitDelivery() override;
    size_t GetBufferSize() override;
    bool IsGrabbing() override;
    size_t GetMinNumBuffers() override;
    size_t GetBufferAlignment() override;

    const std::string& Id() const { return id_; }
    DeviceImpl& Device() const { return *device_; }

    // Value of a stream info command. Throws as QueryValue.
    template <GenTL::STREAM_INFO_CMD_LIST CMD>
    auto GetInfo() const {
        return QueryValue<CMD>([this](int cmd, int* type, void* buffer, size_t* size) {
            return module_.lib->DSGetInfo(module_.handle, cmd, type, buffer, size);
        });
    }

  private:
    struct HandleEntry {
        GenTL::BUFFER_HANDLE handle;
        BufferImpl* buffer;

        bool operator<(const HandleEntry& other) const {
            return std::less<>()(handle, other.handle);
        }
    };
    using HandleEntries = std::vector<HandleEntry>;

    ZelCam::Buffer* Add(std::unique_ptr<BufferImpl> buffer);
    HandleEntries::const_iterator FirstWith(GenTL::BUFFER_HANDLE handle) const;
    ZelCam::Buffer* FindBuffer(GenTL::BUFFER_HANDLE handle) const;
    ZelCamErr QueueAll();
    uint64_t GetCameraPayloadSize();

    DeviceImpl* device_;  // owns this
    GenTL::EVENT_HANDLE newBufferEvent_ = nullptr;
    std::list<std::unique_ptr<BufferImpl>> buffers_;

    // The same buffers sorted by handle. A broken producer may give equal handles; then the buffer
    // announced first comes first. The entries are contiguous, because each frame reads them into
    // the caches again.
    HandleEntries buffersByHandle_;
    std::string id_;
    std::unique_ptr<ArrayImpl> parameters_;  // made when first asked for
};

}  // namespace ZelCameraApi::Internal
