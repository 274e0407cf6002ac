#include "producers/server/modules/bufferpool.h"

#include <vector>

#include "producers/server/base/error.h"

namespace ZelCti {

using State = Buffer::State;

BufferPool::List& BufferPool::ListOf(State state) {
    switch (state) {
        case State::Input:
            return input_;
        case State::Acquiring:
            return acquiring_;
        case State::Output:
            return output_;
        default:
            return idle_;
    }
}

void BufferPool::Move(Buffer& buffer, State state) {
    List& to = ListOf(state);
    to.splice(to.end(), ListOf(buffer.state_), buffer.place_);
    buffer.state_ = state;
    if (state == State::Input) buffer.ClearFrame();
    if (state == State::Output) ++numFired_;
}

void BufferPool::MoveAll(State from, State to) {
    List& source = ListOf(from);
    while (!source.empty())
        Move(*source.front(), to);
}

void BufferPool::Announce(const std::shared_ptr<Buffer>& buffer) {
    List added{buffer};
    const std::lock_guard lock(mutex_);
    if (!announced_.insert(buffer->Memory().base).second) {
        throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, "the memory is announced already");
    }
    buffer->place_ = added.begin();
    idle_.splice(idle_.end(), added);
}

void BufferPool::Revoke(Buffer& buffer) {
    const std::lock_guard lock(mutex_);
    if (buffer.state_ != State::Idle) {
        throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, "the buffer is not idle");
    }
    announced_.erase(buffer.Memory().base);
    idle_.erase(buffer.place_);
    buffer.state_ = State::Revoked;  // for a call on another thread that found it before
}

void BufferPool::Queue(Buffer& buffer) {
    const std::lock_guard lock(mutex_);
    if (buffer.state_ != State::Idle) {
        throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, "the buffer is not idle");
    }
    Move(buffer, State::Input);
}

void BufferPool::Flush(GenTL::ACQ_QUEUE_TYPE operation) {
    const std::lock_guard lock(mutex_);
    switch (operation) {
        case GenTL::ACQ_QUEUE_INPUT_TO_OUTPUT:
            MoveAll(State::Input, State::Output);
            delivered_.WakeAll();
            break;
        case GenTL::ACQ_QUEUE_OUTPUT_DISCARD:
            MoveAll(State::Output, State::Idle);
            break;
        case GenTL::ACQ_QUEUE_ALL_TO_INPUT:
            MoveAll(State::Output, State::Input);
            MoveAll(State::Idle, State::Input);
            break;
        case GenTL::ACQ_QUEUE_UNQUEUED_TO_INPUT:
            MoveAll(State::Idle, State::Input);
            break;
        case GenTL::ACQ_QUEUE_ALL_DISCARD:
            MoveAll(State::Input, State::Idle);
            MoveAll(State::Output, State::Idle);
            break;
        default:
            throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "unknown flush operation");
    }
}

void BufferPool::SetNewestOnly(bool newestOnly) {
    const std::lock_guard lock(mutex_);
    newestOnly_ = newestOnly;
}

Handle BufferPool::HandleAt(uint32_t index) const {
    const std::lock_guard lock(mutex_);
    for (const List* list : {&idle_, &input_, &acquiring_, &output_}) {
        if (index < list->size()) return (*std::next(list->begin(), index))->GetHandle();
        index -= static_cast<uint32_t>(list->size());
    }
    throw Error(GenTL::GC_ERR_INVALID_INDEX, "not that many buffers");
}

StreamCounts BufferPool::Counts() const {
    const std::lock_guard lock(mutex_);
    StreamCounts counts;
    counts.delivered = numDelivered_;
    counts.underrun = numUnderrun_;
    counts.started = numStarted_;
    counts.announced = idle_.size() + input_.size() + acquiring_.size() + output_.size();
    counts.queued = input_.size();
    counts.awaitDelivery = output_.size();
    return counts;
}

bool BufferPool::HasInput() const {
    const std::lock_guard lock(mutex_);
    return !input_.empty();
}

FrameBuffer* BufferPool::Take(bool mustBeOne) {
    const std::lock_guard lock(mutex_);
    if (input_.empty()) {
        if (mustBeOne) ++numUnderrun_;
        return nullptr;
    }
    ++numStarted_;
    Buffer& buffer = *input_.front();
    Move(buffer, State::Acquiring);
    return &buffer;
}

void BufferPool::MoveToFrontOfInput(Buffer& buffer) {
    input_.splice(input_.begin(), acquiring_, buffer.place_);
    buffer.state_ = State::Input;
}

void BufferPool::PutBack(FrameBuffer& buffer) {
    const std::lock_guard lock(mutex_);
    --numStarted_;
    MoveToFrontOfInput(static_cast<Buffer&>(buffer));
}

void BufferPool::Lose(FrameBuffer& buffer) {
    const std::lock_guard lock(mutex_);
    ++numUnderrun_;
    MoveToFrontOfInput(static_cast<Buffer&>(buffer));
}

void BufferPool::Deliver(FrameBuffer& buffer, const FrameInfo& frame) {
    auto& delivered = static_cast<Buffer&>(buffer);
    delivered.SetFrame(frame);
    std::unique_lock lock(mutex_);
    if (newestOnly_) MoveAll(State::Output, State::Input);
    Move(delivered, State::Output);
    delivered_.UnlockAndWakeOne(lock);
}

void BufferPool::FetchOutput() {
    ++numDelivered_;
    Move(FrontOutput(), State::Idle);
}

void BufferPool::DiscardOutput() {
    MoveAll(State::Output, State::Idle);
}

}  // namespace ZelCti
