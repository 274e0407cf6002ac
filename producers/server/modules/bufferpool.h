// The buffers of a stream and their queues.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_set>

#include "gentl/GenTL.h"
#include "producers/server/events/event.h"
#include "producers/server/modules/buffer.h"

namespace ZelSim {

// What STREAM_INFO_NUM_... report; the sums run from the opening of the stream.
struct StreamCounts {
    uint64_t delivered;
    uint64_t underrun;
    uint64_t started;
    size_t announced;
    size_t queued;
    size_t awaitDelivery;
};

// Where the client, which queues and fetches buffers, and the camera, which fills them, meet.
// Buffers move between lists without allocation. Thread-safe.
class BufferPool {
  public:
    // Calls `onInput` after buffers were queued, with no lock held.
    explicit BufferPool(std::function<void()> onInput) : onInput_(std::move(onInput)) {}

    // The client's side.

    void Announce(const std::shared_ptr<Buffer>& buffer);
    void Revoke(Buffer& buffer);  // throws GC_ERR_RESOURCE_IN_USE unless it is idle
    void Queue(Buffer& buffer);   // the same
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);

    // Whether a delivered buffer sends those that are not fetched yet back into the input.
    void SetNewestOnly(bool newestOnly);
    Handle HandleAt(uint32_t index) const;  // throws GC_ERR_INVALID_INDEX
    StreamCounts Counts() const;

    // The camera's side.

    bool HasInput() const;

    // The buffer for the next frame, its start being counted; null without a queued one, which
    // counts as an under-run when there `mustBeOne`.
    Buffer* Take(bool mustBeOne);
    void PutBack(Buffer& buffer);  // takes the start of its frame back as well
    void Deliver(Buffer& buffer);

    // The frame of a buffer is lost: the buffer comes first for the next one, and an under-run is
    // counted.
    void Lose(Buffer& buffer);

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

    const std::function<void()> onInput_;
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

}  // namespace ZelSim
