#include "producers/simulator/gige/stream/blockring.h"

#include <algorithm>
#include <new>
#include <utility>

namespace ZelSim {

using ZelCti::FrameBuffer;
using ZelCti::FrameInfo;

namespace {

// Blocks that are filled, wait or are sent: one each.
constexpr size_t kMostAhead = 3;

}  // namespace

// Zeros: not every byte of a frame is written, and none may show what was in memory before.
void Block::Fit(size_t size) {
    if (size > memory_.size()) {
        memory_ = {};  // never both
        memory_.resize(size);
        base_ = memory_.data();
    }
    size_ = size;
}

BlockRing::BlockRing(size_t memory, std::function<size_t()> payloadSize,
                     std::function<void()> onReady)
    : memory_(memory),
      payloadSize_(std::move(payloadSize)),
      onReady_(std::move(onReady)),
      blocks_(memory + kMostAhead) {
    for (Block& block : blocks_)
        block.frame_.parts.reserve(BlockPackets::kMaxParts);
}

size_t BlockRing::Count(Block::State state) const {
    return static_cast<size_t>(std::count_if(
        blocks_.begin(), blocks_.end(), [&](const Block& block) { return block.state_ == state; }));
}

const Block* BlockRing::Oldest(Block::State state) const {
    const Block* oldest = nullptr;
    for (const Block& block : blocks_) {
        if (block.state_ != state || block.isHeld_) continue;
        if (oldest == nullptr || block.sequence_ < oldest->sequence_) oldest = &block;
    }
    return oldest;
}

Block* BlockRing::Oldest(Block::State state) {
    return const_cast<Block*>(std::as_const(*this).Oldest(state));
}

// What a frame may be written to: memory of the oldest block when no other is left.
Block* BlockRing::Usable(size_t mostAhead) {
    using State = Block::State;
    if (Count(State::Filling) + Count(State::Ready) + Count(State::Sending) >= mostAhead)
        return nullptr;
    Block* const free = Oldest(State::Free);
    return free != nullptr ? free : Oldest(State::Sent);
}

bool BlockRing::HasInput() const {
    const std::lock_guard lock(mutex_);
    return const_cast<BlockRing*>(this)->Usable(kMostAhead) != nullptr;
}

FrameBuffer* BlockRing::Take(bool mustBeOne) {
    const size_t size = payloadSize_();
    const std::lock_guard lock(mutex_);
    Block* const block = Usable(mustBeOne ? blocks_.size() : kMostAhead);
    if (block == nullptr) return nullptr;
    block->state_ = Block::State::Free;
    try {
        block->Fit(size);
    } catch (const std::bad_alloc&) {
        return nullptr;  // no memory for the frame: it is lost
    }
    block->state_ = Block::State::Filling;
    return block;
}

void BlockRing::PutBack(FrameBuffer& buffer) {
    const std::lock_guard lock(mutex_);
    BlockOf(buffer).state_ = Block::State::Free;
}

void BlockRing::Deliver(FrameBuffer& buffer, const FrameInfo& frame) {
    {
        const std::lock_guard lock(mutex_);
        Block& block = BlockOf(buffer);
        block.frame_ = frame;
        block.sequence_ = ++numDelivered_;
        block.state_ = Block::State::Ready;
    }
    onReady_();
}

Block* BlockRing::Next() {
    const std::lock_guard lock(mutex_);
    Block* const block = Oldest(Block::State::Ready);
    if (block != nullptr) block->state_ = Block::State::Sending;
    return block;
}

void BlockRing::Finish(Block& block) {
    const std::lock_guard lock(mutex_);
    block.state_ = Block::State::Sent;
    if (Count(Block::State::Sent) > memory_) {
        if (Block* const oldest = Oldest(Block::State::Sent)) oldest->state_ = Block::State::Free;
    }
}

Block* BlockRing::Hold(uint64_t blockId) {
    const std::lock_guard lock(mutex_);
    for (Block& block : blocks_) {
        const bool is = block.state_ == Block::State::Sent || block.state_ == Block::State::Sending;
        if (!is || block.packets.BlockId() != blockId) continue;
        block.isHeld_ = true;
        return &block;
    }
    return nullptr;
}

void BlockRing::LetGo(Block& block) {
    const std::lock_guard lock(mutex_);
    block.isHeld_ = false;
}

std::optional<uint64_t> BlockRing::OldestId() const {
    const std::lock_guard lock(mutex_);
    const Block* oldest = Oldest(Block::State::Sent);
    if (oldest == nullptr) oldest = Oldest(Block::State::Sending);
    if (oldest == nullptr) return std::nullopt;
    return oldest->packets.BlockId();
}

}  // namespace ZelSim
