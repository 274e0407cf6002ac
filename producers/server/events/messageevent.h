// Events that carry bytes.
#pragma once

#include <deque>

#include "producers/server/events/event.h"

namespace ZelCti {

// A registration of any event type but EVENT_NEW_BUFFER: a queue of messages of its own. When
// nobody fetches them, the oldest messages are lost; without memory, the new one. They count as
// fired all the same.
class MessageEvent final : public Event {
  public:
    explicit MessageEvent(GenTL::EVENT_TYPE type) : Event(type, waitPoint_) {}

    void Fire(uint64_t id, EventData data);
    void GetDataInfo(EventData data, Answer answer) override;

  private:
    struct Message {
        uint64_t id;
        std::vector<char> bytes;
    };
    static constexpr size_t kUsualSize = 1024;
    static constexpr size_t kMaxMessages = 1024;

    size_t Count() const override { return messages_.size(); }
    EventData Front() override;
    void Pop() override;
    void Clear() override { messages_.clear(); }
    uint64_t NumFired() const override { return numFired_; }
    size_t SizeMax() const override { return sizeMax_; }
    size_t InfoSizeMax() const override { return sizeMax_; }

    uint64_t IdOf(EventData data) const;

    mutable std::mutex mutex_;
    WaitPoint waitPoint_{mutex_};
    std::deque<Message> messages_;  // guarded by mutex_
    Message last_{};                // guarded by mutex_; the one fetched last
    uint64_t numFired_ = 0;         // guarded by mutex_
    size_t sizeMax_ = kUsualSize;   // guarded by mutex_; larger once a message was
};

}  // namespace ZelCti
