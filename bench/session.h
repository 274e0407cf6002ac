// The same camera used in two ways, with the same operations: through the library, and through the
// functions of the producer alone, which is what the library is compared with.
//
//   Host ──> Camera (open) ──> Start ── NextFrame ... ── Stop ──> closed with the object
//
// All throw when an operation fails.
#pragma once

#include <cstring>
#include <stdexcept>
#include <string>

#include "ZelCam/ZelCam.h"
#include "bench/measure.h"
#include "bench/simulator.h"
#include "tests/support/holder.h"

namespace Bench {

constexpr uint64_t kTimeoutMs = 5000;

inline void Require(bool condition, const char* what) {
    if (!condition) throw std::runtime_error(what);
}

using ZelTest::Holder;

// From the memory of a frame without a picture: it stands behind the number of the frame.
inline uint64_t CompletionTime(const void* memory) {
    uint64_t values[2];
    std::memcpy(values, memory, sizeof values);
    return values[1];
}

// A System and its interface kInterface.
class LibraryHost {
  public:
    LibraryHost();

    ZelCam::Interface& Interface() const { return *interface_; }
    ZelCam::DeviceInfo* Info(size_t camera) const;

  private:
    Holder<ZelCam::System> system_;
    ZelCam::Interface* interface_;
};

class LibraryCamera {
  public:
    using Host = LibraryHost;

    explicit LibraryCamera(const LibraryHost& host, size_t camera = 0);

    ZelCam::Device& Device() const { return *device_; }
    ZelCam::Stream& Stream() const { return *stream_; }

    void Announce(size_t buffers) const;
    void Start(uint32_t flags = ZelCam::StartFlag_KeepQueue) const;
    void Stop() const;

    // GetBuffer.
    ZelCam::Buffer* AwaitFrame() const {
        ZelCam::Buffer* const buffer = stream_->GetBuffer(kTimeoutMs, nullptr);
        Require(buffer != nullptr, "no frame");
        return buffer;
    }

    // When the camera completed a frame, on its clock, if it fills no pictures.
    static uint64_t CompletedAt(ZelCam::Buffer* buffer) {
        return CompletionTime(buffer->GetImage()->imageData);
    }

    // GetImage, QueueBuffer; the timestamp of the frame.
    uint64_t Finish(ZelCam::Buffer* buffer) const {
        const uint64_t timestamp = buffer->GetImage()->timestamp;
        stream_->QueueBuffer(buffer);
        return timestamp;
    }

    uint64_t NextFrame() const { return Finish(AwaitFrame()); }

  private:
    Holder<ZelCam::Device> device_;
    ZelCam::Stream* stream_;
};

class BareHost {
  public:
    BareHost();
    ~BareHost();
    BareHost(const BareHost&) = delete;
    BareHost& operator=(const BareHost&) = delete;

    GenTL::IF_HANDLE Interface() const { return interface_; }

  private:
    const Simulator& gentl_ = Simulator::Get();
    GenTL::TL_HANDLE system_ = nullptr;
    GenTL::IF_HANDLE interface_ = nullptr;
};

class BareCamera {
  public:
    using Host = BareHost;

    explicit BareCamera(const BareHost& host, size_t camera = 0);
    ~BareCamera();
    BareCamera(const BareCamera&) = delete;
    BareCamera& operator=(const BareCamera&) = delete;

    GenTL::DEV_HANDLE Device() const { return device_; }
    GenTL::PORT_HANDLE Port() const { return port_; }

    void Announce(size_t buffers) const;
    void Start() const;
    void Stop() const;

    // EventGetData.
    GenTL::BUFFER_HANDLE AwaitFrame() const {
        GenTL::EVENT_NEW_BUFFER_DATA data;
        size_t size = sizeof data;
        Check(gentl_.EventGetData(event_, &data, &size, kTimeoutMs), "EventGetData");
        return data.BufferHandle;
    }

    uint64_t CompletedAt(GenTL::BUFFER_HANDLE buffer) const {
        return CompletionTime(reinterpret_cast<const void*>(Info(buffer, GenTL::BUFFER_INFO_BASE)));
    }

    // DSGetBufferInfo for what GetImage brings up to date, DSQueueBuffer.
    uint64_t Finish(GenTL::BUFFER_HANDLE buffer) const {
        const uint64_t timestamp = Info(buffer, GenTL::BUFFER_INFO_TIMESTAMP);
        Keep(Info(buffer, GenTL::BUFFER_INFO_FRAMEID));
        gentl_.DSQueueBuffer(stream_, buffer);
        return timestamp;
    }

    uint64_t NextFrame() const { return Finish(AwaitFrame()); }

  private:
    uint64_t Info(GenTL::BUFFER_HANDLE buffer, GenTL::BUFFER_INFO_CMD command) const {
        GenTL::INFO_DATATYPE type = 0;
        uint64_t value = 0;
        size_t size = sizeof value;
        gentl_.DSGetBufferInfo(stream_, buffer, command, &type, &value, &size);
        return value;
    }

    const Simulator& gentl_ = Simulator::Get();
    GenTL::DEV_HANDLE device_ = nullptr;
    GenTL::PORT_HANDLE port_ = nullptr;
    GenTL::DS_HANDLE stream_ = nullptr;
    GenTL::EVENT_HANDLE event_ = nullptr;
};

}  // namespace Bench
