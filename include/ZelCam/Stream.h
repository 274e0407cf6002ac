// A data stream of an opened camera.
#ifndef ZELCAM_STREAM_H
#define ZELCAM_STREAM_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/Error.h"
#include "ZelCam/Interface.h"

namespace ZelCam {

class Buffer;

// What FlushBuffers does with the buffers in the producer's queues (GenTL ACQ_QUEUE_TYPE).
enum class FlushOperation : uint32_t {
    InputToOutput = 0,    // delivers, empty, the buffers that wait to be filled
    OutputDiscard = 1,    // drops delivered buffers that were not fetched
    AllToInput = 2,       // queues every buffer to be filled again
    UnqueuedToInput = 3,  // queues the buffers that are in no queue
    AllDiscard = 4        // takes every buffer out of the queues
};

// Flags of Stream::StartAcquisition. Bits 0 to 30 are GenTL's ACQ_START_FLAGS.
enum StartFlag : uint32_t {
    StartFlag_Default = 0,
    StartFlag_KeepQueue = 0x80000000U  // leave the queue as it is instead of queueing every buffer
};

// Flags of Stream::StopAcquisition: GenTL's ACQ_STOP_FLAGS.
enum StopFlag : uint32_t {
    StopFlag_Default = 0,  // end after the current frame
    StopFlag_Kill = 1      // end at once and drop the current frame
};

// A wait without limit, and an acquisition without end (GenTL GENTL_INFINITE).
constexpr uint64_t Infinite = ~uint64_t{0};

// Delivers images in buffers that are announced once and reused:
//
//                 CreateBuffer / SetBuffer / AllocBufferQueue          RevokeBuffer
//   (no buffer) ──────────────────────────────────────────> announced ─────────────> (no buffer)
//                                                            │     ^
//                            QueueBuffer / StartAcquisition  v     │ FlushBuffers
//                                                            queued (waits to be filled)
//                                               QueueBuffer  ^     │ the camera fills it
//                                                            │     v
//                                       the application <── delivered
//                                                GetBuffer
//
// A stream is the producer's side of an acquisition. A camera sends nothing until its feature
// AcquisitionStart is executed. While its TLParamsLocked is 1, the features that decide the size of
// frames are fixed. Both are features of Device::GetCameraParameters. An application starts and
// stops in this order, and leaves out features that the camera does not have:
//
//   TLParamsLocked = 1   fixes the size of frames
//   AllocBufferQueue     makes buffers of that size
//   StartAcquisition     the producer is ready to receive
//   AcquisitionStart     the camera sends
//        ... GetBuffer, QueueBuffer ...
//   AcquisitionStop      the camera stops sending; AcquisitionAbort if that takes too long
//   StopAcquisition      the producer stops receiving
//   TLParamsLocked = 0   settings can change again; changed sizes need new buffers
//
// The Stream owns its Buffers: a Buffer is valid until it is revoked, until ReleaseBufferQueue, or
// until the Stream or its Device is released. The Stream belongs to its Device.
//
// Thread-bound (see ZelCam.h), with one exception: CancelBuffer is thread-safe and wakes a thread
// that waits in GetBuffer. GetBufferSize and AllocBufferQueue read features of the camera, which
// other threads may use meanwhile.
class Stream {
  public:
    // Stops, revokes all buffers, closes the stream and destroys this object. Do not call it from
    // an event callback of this stream.
    virtual void Release() = 0;

    // Announce one buffer of `size` bytes: memory of the producer, or the application's memory at
    // `ptr`, which must stay valid until the buffer is revoked. Buffer::GetUserPtr returns
    // `userPtr`. Null on failure, with the producer's code in `*err`.
    virtual Buffer* CreateBuffer(size_t size, void* userPtr, ZelCamErr* err) = 0;
    virtual Buffer* SetBuffer(void* ptr, size_t size, void* userPtr, ZelCamErr* err) = 0;

    // Revokes and destroys `buffer`. The result is success even if this stream does not have the
    // buffer or the producer refuses. A producer may refuse a buffer that is queued: it then keeps
    // the buffer and may write into its memory until the stream is closed, and GetNumAnnounced
    // still counts it. Therefore call StopAcquisition, FlushBuffers(AllDiscard), then RevokeBuffer,
    // and only then free memory that you gave to SetBuffer.
    virtual ZelCamErr RevokeBuffer(Buffer* buffer) = 0;

    // Hands a buffer to the producer to be filled. ZelCamErr_InvalidArgument for null and for an
    // object that is not a Buffer of this library; else the producer's code.
    virtual ZelCamErr QueueBuffer(Buffer* buffer) = 0;

    // Waits for the next filled buffer, for at most `timeout` milliseconds (Infinite: without
    // limit). Null on failure, with the producer's code in `*err`: ZelCamErr_GenTL_Timeout if the
    // time ran out, ZelCamErr_GenTL_Abort after CancelBuffer. ZelCamErr_Error if the producer
    // delivered a buffer that does not belong to this stream. The Stream keeps the ownership of the
    // buffer; give it back with QueueBuffer.
    virtual Buffer* GetBuffer(uint64_t timeout, ZelCamErr* err) = 0;

    // Ends a GetBuffer that waits on another thread. Thread-safe. Returns the producer's code.
    virtual ZelCamErr CancelBuffer() = 0;

    // Moves buffers between the producer's queues. Returns the producer's code.
    virtual ZelCamErr FlushBuffers(FlushOperation op) = 0;

    // Make the producer receive `count` frames (Infinite: without end), and stop. Features start
    // and stop the camera (above). StartAcquisition first queues every buffer, unless `flags` has
    // StartFlag_KeepQueue. They return the producer's code.
    virtual ZelCamErr StartAcquisition(uint64_t count, uint32_t flags) = 0;
    virtual ZelCamErr StopAcquisition(uint32_t flags) = 0;

    // Creates and queues `count` buffers of GetBufferSize() bytes. Returns the code of the first
    // failure; buffers that were made before the failure stay.
    virtual ZelCamErr AllocBufferQueue(void* userPtr, size_t count) = 0;

    // Revokes every buffer of the stream, no matter which operation made it.
    // ZelCamErr_AcquisitionActive while the stream is grabbing.
    virtual ZelCamErr ReleaseBufferQueue() = 0;

    // Number of buffers of the stream.
    virtual size_t GetBufferQueueSize() = 0;

    // Subscribe to and unsubscribe from GenTL events of the stream, as for Interface. They refuse
    // the new-buffer event (1) with ZelCamErr_GenTL_ResourceInUse, because GetBuffer consumes it.
    virtual ZelCamErr RegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;
    virtual ZelCamErr RegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;

    // The features of the stream, which owns the array and returns the same one on every call. Null
    // on failure, as for Interface; the next call tries again.
    virtual ZelGenParam::Array* GetParameters(ZelCamErr* err) = 0;

    // Counters of the producer (GenTL STREAM_INFO_CMD). Some producers count frames from the start
    // of the acquisition, others, such as the default one, from the opening of the stream: compare
    // with the values at the start. 0 or false if the producer does not report them.
    virtual uint64_t GetNumDelivered() = 0;
    virtual uint64_t GetNumUnderrun() = 0;  // frames lost because no buffer was queued
    virtual uint64_t GetNumAnnounced() = 0;
    virtual uint64_t GetNumQueued() = 0;
    virtual uint64_t GetNumAwaitDelivery() = 0;

    // Bytes that a buffer needs at the current settings of the camera; 0 if it cannot be
    // determined. This is the producer's size if it defines one; else the camera's "PayloadSize",
    // rounded up to a multiple of GetBufferAlignment(); else the size of the image without padding,
    // from "Width", "Height" and "PixelFormat".
    virtual size_t GetBufferSize() = 0;

    virtual bool IsGrabbing() = 0;

    // Number of buffers that must be announced before the acquisition starts.
    virtual size_t GetMinNumBuffers() = 0;

    // Alignment in bytes that the producer requires for announced memory.
    virtual size_t GetBufferAlignment() = 0;

  protected:
    ~Stream() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_STREAM_H
