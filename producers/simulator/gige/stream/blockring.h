// The frames of a stream channel, from the camera to the network.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "producers/simulator/gige/stream/blockpackets.h"

namespace ZelSim {

// A frame in memory, and how it is sent.
class Block final : public ZelCti::FrameBuffer {
  public:
    uint8_t* Base() const override { return base_; }
    size_t Size() const override { return size_; }

    // What the camera says of it; when it is sent.
    const ZelCti::FrameInfo& Frame() const { return frame_; }

    // Belong to the sender, which sets them when it begins the block.
    BlockPackets packets;
    uint32_t numSent = 0;  // places of packets that were dealt with

  private:
    friend class BlockRing;
    enum class State : uint8_t { Free, Filling, Ready, Sending, Sent };

    void Fit(size_t size);

    State state_ = State::Free;
    bool isHeld_ = false;
    uint64_t sequence_ = 0;  // grows from block to block in the order of their delivery
    ZelCti::FrameInfo frame_;
    std::vector<uint8_t> memory_;
    uint8_t* base_ = nullptr;
    size_t size_ = 0;  // of the frame
};

// A ring of blocks between the thread that takes frames and the one that sends them:
//
//   free ──Take──> filling ──Deliver──> ready ──Next──> sending ──Finish──> sent ──> free
//
// What was sent stays in memory until there are newer blocks enough, so that its packets can be
// sent again, unless the network is slower than a camera that keeps its frame rate: then the memory
// serves for blocks that wait, and when all of it does, frames are lost. A camera without a frame
// rate waits instead. Thread-safe; the sender is one thread. Memory is taken for the first frames
// and when frames become larger.
class BlockRing final : public ZelCti::BufferQueue {
  public:
    // `memory` blocks that were sent can be found. `payloadSize` says how large the next frame is,
    // `onReady` is called when there is a block to send; both with no lock of the ring that others
    // need, but possibly with those of the camera's acquisition.
    BlockRing(size_t memory, std::function<size_t()> payloadSize, std::function<void()> onReady);

    bool HasInput() const override;
    ZelCti::FrameBuffer* Take(bool mustBeOne) override;
    void PutBack(ZelCti::FrameBuffer& buffer) override;
    void Deliver(ZelCti::FrameBuffer& buffer, const ZelCti::FrameInfo& frame) override;
    void Lose(ZelCti::FrameBuffer& buffer) override { PutBack(buffer); }

    // For the sender. The block to send next, or null.
    Block* Next();
    void Finish(Block& block);  // it is sent

    // The block with this id, sent or being sent, which stays until it is let go; or null.
    Block* Hold(uint64_t blockId);
    void LetGo(Block& block);

    // The id of the oldest block that Hold finds.
    std::optional<uint64_t> OldestId() const;

  private:
    static Block& BlockOf(ZelCti::FrameBuffer& buffer) { return static_cast<Block&>(buffer); }
    Block* Oldest(Block::State state);
    const Block* Oldest(Block::State state) const;
    Block* Usable(size_t mostAhead);
    size_t Count(Block::State state) const;

    const size_t memory_;
    const std::function<size_t()> payloadSize_;
    const std::function<void()> onReady_;
    mutable std::mutex mutex_;  // guards what follows
    std::vector<Block> blocks_;
    uint64_t numDelivered_ = 0;
};

}  // namespace ZelSim
