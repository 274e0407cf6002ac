// The event of filled buffers.
#pragma once

#include <memory>

#include "producers/server/events/event.h"
#include "producers/server/modules/bufferpool.h"

namespace ZelCti {

// The registration of EVENT_NEW_BUFFER: its queue is the output queue of the stream. Flushing it
// discards the buffers of that queue.
class NewBufferEvent final : public Event {
  public:
    explicit NewBufferEvent(const std::shared_ptr<BufferPool>& pool)
        : Event(GenTL::EVENT_NEW_BUFFER, pool->Delivered()), pool_(pool) {}

    void GetDataInfo(EventData data, Answer answer) override;

  private:
    size_t Count() const override { return pool_->NumOutput(); }
    EventData Front() override;
    void Pop() override { pool_->FetchOutput(); }
    void Clear() override { pool_->DiscardOutput(); }
    uint64_t NumFired() const override { return pool_->NumFired(); }
    size_t SizeMax() const override { return sizeof(front_); }
    size_t InfoSizeMax() const override { return sizeof(void*); }

    const std::shared_ptr<BufferPool> pool_;
    GenTL::EVENT_NEW_BUFFER_DATA front_{};  // guarded by the mutex of the pool
};

}  // namespace ZelCti
