// The buffers of a stream and their queues.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_set>

#include "gentl/GenTL.h"
#include "producers/server/events/event.h"
#include "producers/server/modules/buffer.h"

namespace ZelCti {

// What STREAM_INFO_NUM_... report; the sums run from the opening of the stream.
struct StreamCounts {
    uint64_t delivered = 0;
    uint64_t underrun = 0;
    uint64_t started = 0;
    size_t announced = 0;
    size_t queued = 0;
    size_t awaitDelivery = 0;
};

// Where the client, which queues and fetches buffers, and the engine, which fills them, meet.
// Buffers move between lists without allocation. Thread-safe.
class BufferPool final : public BufferQueue {
  public:
    // The client's side.

    void Announce(const std::shared_ptr<Buffer>& buffer);
    void Revoke(Buffer& buffer);  // throws GC_ERR_RESOURCE_IN_USE unless it is idle
    void Queue(Buffer& buffer);   // the same
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);

    // Whether a delivered buffer sends those that are not fetched yet back into the input.
    void SetNewestOnly(bool newestOnly);
    Handle HandleAt(uint32_t index) const;  // throws GC_ERR_INVALID_INDEX
    StreamCounts Counts() const;

    // The engine's side.

    bool HasInput() const override;
    FrameBuffer* Take(bool mustBeOne) override;
    void PutBack(FrameBuffer& buffer) override;
    void Deliver(FrameBuffer& buffer, const FrameInfo& frame) override;
    void Lose(FrameBuffer& buffer) override;

    // The queue of delivered buffers, as the event of new buffers sees it; with the mutex held.

    WaitPoint& Delivered() { return delivered_; }
    size_t NumOutput() const { return output_.size(); }
    uint64_t NumFired() const { return numFired_; }
    Buffer& FrontOutput() { return *output_.front(); }
    void FetchOutput();
    void DiscardOutput();

  private:
    using List = std::list<std::shared_ptr<Buffer>>;

    List& ListOf(Buffer::State state);
    void Move(Buffer& buffer, Buffer::State state);
    void MoveAll(Buffer::State from, Buffer::State to);
    void MoveToFrontOfInput(Buffer& buffer);

    mutable std::mutex mutex_;  // guards all that follows
    WaitPoint delivered_{mutex_};
    bool newestOnly_ = false;
    List idle_;
    List input_;
    List acquiring_;
    List output_;
    std::unordered_set<const void*> announced_;  // the memory of all buffers
    uint64_t numDelivered_ = 0;
    uint64_t numUnderrun_ = 0;
    uint64_t numStarted_ = 0;
    uint64_t numFired_ = 0;
};

}  // namespace ZelCti
