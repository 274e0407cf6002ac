#include "ZelCameraApi/streamimpl.h"

#include <algorithm>

#include "ZelCameraApi/base/errorboundary.h"
#include "ZelCameraApi/bufferimpl.h"
#include "ZelCameraApi/deviceimpl.h"
#include "ZelCameraApi/listimpl.h"

namespace ZelCameraApi::Internal {

StreamImpl::StreamImpl(DeviceImpl* device, const std::string& id)
    : EventSource(device->Module().lib, GenTL::EVENT_NEW_BUFFER), device_(device), id_(id) {
    const GenTLLib& lib = *module_.lib;
    ThrowOnError(lib.DevOpenDataStream(device->Module().handle, id_.c_str(), &module_.handle));
    lib.GCRegisterEvent(module_.handle, GenTL::EVENT_NEW_BUFFER, &newBufferEvent_);
}

StreamImpl::~StreamImpl() {
    const GenTLLib& lib = *module_.lib;
    events_.clear();
    if (StreamImpl::IsGrabbing()) {
        lib.DSStopAcquisition(module_.handle, GenTL::ACQ_STOP_FLAGS_KILL);
    }
    if (newBufferEvent_ != nullptr) {
        lib.GCUnregisterEvent(module_.handle, GenTL::EVENT_NEW_BUFFER);
    }
    lib.DSFlushQueue(module_.handle, GenTL::ACQ_QUEUE_ALL_DISCARD);
    buffers_.clear();
    lib.DSClose(module_.handle);
}

void StreamImpl::Release() {
    device_->CloseStream(this);
}

ZelCam::Buffer* StreamImpl::CreateBuffer(size_t size, void* userPtr, ZelCamErr* err) {
    return NullWithCode(err, [&]() -> ZelCam::Buffer* {
        return Add(std::make_unique<BufferImpl>(this, size, userPtr));
    });
}

ZelCam::Buffer* StreamImpl::SetBuffer(void* ptr, size_t size, void* userPtr, ZelCamErr* err) {
    return NullWithCode(err, [&]() -> ZelCam::Buffer* {
        return Add(std::make_unique<BufferImpl>(this, ptr, size, userPtr));
    });
}

// Either both containers take the buffer, or neither does.
ZelCam::Buffer* StreamImpl::Add(std::unique_ptr<BufferImpl> buffer) {
    std::list<std::unique_ptr<BufferImpl>> added;
    BufferImpl* const own = added.emplace_back(std::move(buffer)).get();
    const HandleEntry entry{own->Handle(), own};
    buffersByHandle_.insert(
        std::upper_bound(buffersByHandle_.begin(), buffersByHandle_.end(), entry), entry);
    buffers_.splice(buffers_.end(), added);
    return own;
}

ZelCamErr StreamImpl::RevokeBuffer(ZelCam::Buffer* buffer) {
    const auto own = FindOwned(buffers_, buffer);
    if (own == buffers_.end()) return ZelCamErr_Success;
    auto entry = FirstWith((*own)->Handle());
    while (entry->buffer != own->get())
        ++entry;
    buffersByHandle_.erase(entry);
    buffers_.erase(own);
    return ZelCamErr_Success;
}

ZelCamErr StreamImpl::QueueBuffer(ZelCam::Buffer* buffer) {
    auto* const own = dynamic_cast<BufferImpl*>(buffer);
    if (own == nullptr) return ZelCamErr_InvalidArgument;
    own->BufferImpl::DetachChunks();
    return static_cast<ZelCamErr>(module_.lib->DSQueueBuffer(module_.handle, own->Handle()));
}

ZelCam::Buffer* StreamImpl::GetBuffer(uint64_t timeout, ZelCamErr* err) {
    GenTL::EVENT_NEW_BUFFER_DATA data{};
    size_t size = sizeof data;
    const int result = module_.lib->EventGetData(newBufferEvent_, &data, &size, timeout);
    if (result != 0) {
        StoreError(err, result);
        return nullptr;
    }
    ZelCam::Buffer* const buffer = FindBuffer(data.BufferHandle);
    StoreError(err, buffer != nullptr ? ZelCamErr_Success : ZelCamErr_Error);
    return buffer;
}

// The first entry whose handle is not less than `handle`.
StreamImpl::HandleEntries::const_iterator StreamImpl::FirstWith(GenTL::BUFFER_HANDLE handle) const {
    return std::lower_bound(buffersByHandle_.begin(), buffersByHandle_.end(),
                            HandleEntry{handle, nullptr});
}

ZelCam::Buffer* StreamImpl::FindBuffer(GenTL::BUFFER_HANDLE handle) const {
    const auto first = FirstWith(handle);
    return first != buffersByHandle_.end() && first->handle == handle ? first->buffer : nullptr;
}

ZelCamErr StreamImpl::CancelBuffer() {
    return static_cast<ZelCamErr>(module_.lib->EventKill(newBufferEvent_));
}

ZelCamErr StreamImpl::FlushBuffers(ZelCam::FlushOperation op) {
    device_->Chunks().DetachAny();
    return static_cast<ZelCamErr>(module_.lib->DSFlushQueue(module_.handle, static_cast<int>(op)));
}

ZelCamErr StreamImpl::StartAcquisition(uint64_t count, uint32_t flags) {
    device_->Chunks().DetachAny();
    if ((flags & ZelCam::StartFlag_KeepQueue) == 0) {
        const ZelCamErr result = QueueAll();
        if (result != ZelCamErr_Success) return result;
    }
    const int producerFlags = static_cast<int>(flags & ~uint32_t{ZelCam::StartFlag_KeepQueue});
    return static_cast<ZelCamErr>(
        module_.lib->DSStartAcquisition(module_.handle, producerFlags, count));
}

ZelCamErr StreamImpl::QueueAll() {
    int result = module_.lib->DSFlushQueue(module_.handle, GenTL::ACQ_QUEUE_ALL_DISCARD);
    for (auto buffer = buffers_.begin(); result == 0 && buffer != buffers_.end(); ++buffer) {
        result = module_.lib->DSQueueBuffer(module_.handle, (*buffer)->Handle());
    }
    return static_cast<ZelCamErr>(result);
}

ZelCamErr StreamImpl::StopAcquisition(uint32_t flags) {
    return static_cast<ZelCamErr>(
        module_.lib->DSStopAcquisition(module_.handle, static_cast<int>(flags)));
}

ZelCamErr StreamImpl::AllocBufferQueue(void* userPtr, size_t count) {
    ZelCam::Stream& self = *this;
    const size_t size = self.GetBufferSize();
    for (size_t i = 0; i < count; ++i) {
        ZelCamErr err = ZelCamErr_Success;
        ZelCam::Buffer* const buffer = self.CreateBuffer(size, userPtr, &err);
        if (buffer == nullptr) return err;
        err = self.QueueBuffer(buffer);
        if (err != ZelCamErr_Success) return err;
    }
    return ZelCamErr_Success;
}

ZelCamErr StreamImpl::ReleaseBufferQueue() {
    if (IsGrabbing()) return ZelCamErr_AcquisitionActive;
    FlushBuffers(ZelCam::FlushOperation::AllDiscard);
    buffersByHandle_.clear();
    buffers_.clear();
    return ZelCamErr_Success;
}

size_t StreamImpl::GetBufferQueueSize() {
    return buffers_.size();
}

ZelGenParam::Array* StreamImpl::GetParameters(ZelCamErr* err) {
    StoreError(err, ZelCamErr_Success);
    if (parameters_ == nullptr) parameters_ = CreateArray(module_, err, nullptr);
    return parameters_.get();
}

uint64_t StreamImpl::GetNumDelivered() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_NUM_DELIVERED>(); });
}

uint64_t StreamImpl::GetNumUnderrun() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_NUM_UNDERRUN>(); });
}

uint64_t StreamImpl::GetNumAnnounced() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_NUM_ANNOUNCED>(); });
}

uint64_t StreamImpl::GetNumQueued() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_NUM_QUEUED>(); });
}

uint64_t StreamImpl::GetNumAwaitDelivery() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_NUM_AWAIT_DELIVERY>(); });
}

size_t StreamImpl::GetBufferSize() {
    return ZeroOnError([this]() -> size_t {
        if (GetInfo<GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE>()) {
            return GetInfo<GenTL::STREAM_INFO_PAYLOAD_SIZE>();
        }
        return static_cast<size_t>(GetCameraPayloadSize());
    });
}

// The size of an image according to the camera's features. A feature that cannot be read counts as
// 0, and so makes the size 0.
uint64_t StreamImpl::GetCameraPayloadSize() {
    ZelGenParam::Array* const camera = device_->GetCameraParameters(nullptr);
    if (camera == nullptr) return 0;
    const auto integer = [camera](const char* name) {
        return static_cast<uint64_t>(camera->GetIntegerValue(name, nullptr));
    };
    if (ZelGenParam::Int* const payloadSize = camera->GetInt("PayloadSize", nullptr)) {
        const auto size = static_cast<uint64_t>(payloadSize->GetValue(nullptr));
        const uint64_t alignment = GetBufferAlignment();
        return alignment != 0 ? (size - 1 + alignment) / alignment * alignment : 0;
    }
    const auto format = static_cast<uint64_t>(camera->GetEnumValue("PixelFormat", nullptr));
    const uint64_t bitsPerPixel = format >> 16 & 0xFF;
    return bitsPerPixel * (integer("Width") * integer("Height")) >> 3;
}

bool StreamImpl::IsGrabbing() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_IS_GRABBING>(); });
}

size_t StreamImpl::GetMinNumBuffers() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN>(); });
}

size_t StreamImpl::GetBufferAlignment() {
    return ZeroOnError([this] { return GetInfo<GenTL::STREAM_INFO_BUF_ALIGNMENT>(); });
}

}  // namespace ZelCameraApi::Internal
