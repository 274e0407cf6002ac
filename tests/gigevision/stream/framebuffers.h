// Buffers of a client that takes frames, as an engine sees them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <vector>

#include "producers/transport.h"
#include "tests/wire/bytes.h"

namespace GevTest {

class FrameBuffers final : public ZelCti::BufferQueue {
  public:
    FrameBuffers(size_t count, size_t size) {
        for (size_t i = 0; i < count; ++i)
            input_.push_back(&buffers_.emplace_back(size));
        count_ = count;
    }

    struct Frame {
        ZelCti::FrameInfo info;
        WireTest::Bytes data;  // of the whole buffer
    };

    // The next frame, whose buffer is queued again; none when none comes for a long time.
    std::optional<Frame> Next() {
        std::unique_lock lock(mutex_);
        constexpr std::chrono::seconds kPatience{20};
        if (!changed_.wait_for(lock, kPatience, [this] { return !output_.empty(); })) return {};
        Buffer& buffer = *output_.front();
        output_.pop_front();
        Frame frame{buffer.info, buffer.memory};
        std::fill(buffer.memory.begin(), buffer.memory.end(), uint8_t{0xEE});
        input_.push_back(&buffer);
        return frame;
    }

    // Whether no engine has a buffer.
    bool AreAllBack() const {
        const std::lock_guard lock(mutex_);
        return input_.size() + output_.size() == count_;
    }

    // Buffers that nobody can take.
    void Hold(bool held) {
        const std::lock_guard lock(mutex_);
        isHeld_ = held;
    }

    bool HasInput() const override {
        const std::lock_guard lock(mutex_);
        return !isHeld_ && !input_.empty();
    }
    ZelCti::FrameBuffer* Take(bool /*mustBeOne*/) override {
        const std::lock_guard lock(mutex_);
        if (isHeld_ || input_.empty()) return nullptr;
        Buffer* const buffer = input_.front();
        input_.pop_front();
        return buffer;
    }
    void PutBack(ZelCti::FrameBuffer& buffer) override {
        const std::lock_guard lock(mutex_);
        input_.push_front(static_cast<Buffer*>(&buffer));
    }
    void Deliver(ZelCti::FrameBuffer& buffer, const ZelCti::FrameInfo& frame) override {
        const std::lock_guard lock(mutex_);
        auto* const mine = static_cast<Buffer*>(&buffer);
        mine->info = frame;
        output_.push_back(mine);
        changed_.notify_all();
    }
    void Lose(ZelCti::FrameBuffer& buffer) override { PutBack(buffer); }

  private:
    class Buffer final : public ZelCti::FrameBuffer {
      public:
        explicit Buffer(size_t size) : memory(size, 0xEE) {}
        uint8_t* Base() const override { return memory.data(); }
        size_t Size() const override { return memory.size(); }

        mutable WireTest::Bytes memory;
        ZelCti::FrameInfo info;
    };

    mutable std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    bool isHeld_ = false;
    size_t count_ = 0;
    std::list<Buffer> buffers_;
    std::deque<Buffer*> input_;
    std::deque<Buffer*> output_;
};

}  // namespace GevTest
