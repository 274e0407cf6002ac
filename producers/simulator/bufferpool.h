// The buffers of a stream and their queues.
#ifndef ZELSIM_BUFFERPOOL_H
#define ZELSIM_BUFFERPOOL_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_set>

#include "gentl/GenTL.h"
#include "producers/simulator/buffer.h"
#include "producers/simulator/event.h"

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

// Where the client, which queues and fetches buffers, and the generator, which fills them, meet.
// Buffers move between lists without allocation. Thread-safe.
class BufferPool {
  public:
    using Clock = WaitPoint::Clock;

    // How soon an acquisition ends.
    enum class Halt { No, AfterFrame, Now };

    // The client's side.

    void Announce(const std::shared_ptr<Buffer>& buffer);
    void Revoke(Buffer& buffer);  // throws GC_ERR_RESOURCE_IN_USE unless it is idle
    void Queue(Buffer& buffer);   // the same
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);

    // Whether a delivered buffer sends those that are not fetched yet back into the input.
    void SetNewestOnly(bool newestOnly);
    Handle HandleAt(uint32_t index) const;  // throws GC_ERR_INVALID_INDEX
    StreamCounts Counts() const;

    // The generator's side.

    void SetHalt(Halt halt);
    bool IsHalted() const { return halt_.load(std::memory_order_relaxed) != Halt::No; }

    // Waits for a point in time; false when a halt of at least this urgency came first.
    bool WaitUntil(Clock::time_point time, Halt urgency);

    // Waits until `isDue` becomes true, at which it looks upon Wake and queued buffers; false when
    // a halt came first.
    bool WaitFor(const std::function<bool()>& isDue);
    void Wake();
    bool HasInput() const { return !input_.empty(); }  // for `isDue` only

    // The buffer for the next frame, its start being counted. Without a queued buffer: null after
    // counting an under-run, or, with `wait`, waits for one until a halt.
    Buffer* Take(bool wait);
    void PutBack(Buffer& buffer);  // takes the start of its frame back as well
    void Deliver(Buffer& buffer);

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
    void WakeGenerator();

    mutable std::mutex mutex_;  // guards all that follows
    WaitPoint delivered_{mutex_};
    WaitPoint generatorWake_{mutex_};
    bool generatorSleeps_ = false;
    std::atomic<Halt> halt_{Halt::No};  // read without the mutex as well
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

#endif  // ZELSIM_BUFFERPOOL_H
