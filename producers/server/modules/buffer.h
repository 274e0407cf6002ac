// Announced buffers.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

#include "producers/server/modules/cameralink.h"
#include "producers/server/modules/localmodule.h"
#include "producers/transport.h"
#include "producers/wire/chunktrailer.h"

namespace ZelCti {

// Memory that a client gave or had allocated.
struct BufferMemory {
    uint8_t* base;
    size_t size;
    void* userPointer;
    bool composite;                                                    // announced with segments
    std::unique_ptr<void, void (*)(void*)> owned{nullptr, std::free};  // null: the client's
};

// A buffer of a stream. Its place among the buffers belongs to the BufferPool; the frame it holds
// is set when it is delivered. Thread-safe.
//
//   idle --queue--> input --taken--> acquiring --deliver--> output --fetched--> idle
//
// DSFlushQueue moves buffers between idle, input and output.
class Buffer final : public LocalModule, public FrameBuffer {
  public:
    enum class State : uint8_t { Idle, Input, Acquiring, Output, Revoked };

    static bool IsKind(Kind kind) { return kind == Kind::Buffer; }

    // Of a stream with this information.
    Buffer(std::shared_ptr<const CameraLink> link, const Module& stream, const StreamInfo& info,
           BufferMemory memory);

    const CameraLink* Link() const override { return link_.get(); }
    const BufferMemory& Memory() const { return memory_; }
    bool IsOf(const Module& stream) const { return &stream_ == &stream; }

    // The memory as an engine sees it.
    uint8_t* Base() const override { return memory_.base; }
    size_t Size() const override { return memory_.size; }

    void SetFrame(const FrameInfo& frame);
    void ClearFrame();

    void GetInfo(Answer answer) const;
    void GetSegmentInfo(Answer answer) const;

    // Of a multi-part payload; throw GC_ERR_NO_DATA for another, GC_ERR_INVALID_INDEX.
    size_t NumParts() const;
    void GetPartInfo(size_t index, Answer answer) const;

    // Throws GC_ERR_NO_DATA when the frame has none, or damaged ones.
    std::vector<ChunkPlace> Chunks() const;

  private:
    friend class BufferPool;

    bool AnswerMemory(Answer answer) const;
    bool AnswerState(Answer answer) const;
    bool AnswerGeometry(Answer answer) const;
    bool AnswerPixels(Answer answer) const;
    bool AnswerFrame(Answer answer) const;
    bool AnswerChunks(Answer answer) const;
    const FrameInfo& Frame() const;               // throws GC_ERR_NOT_AVAILABLE without one
    const FrameInfo& Image() const;               // the same, also for a frame that is no image
    const std::vector<FramePart>& Parts() const;  // throws as NumParts does
    size_t DataSize() const;                      // 0 without a frame

    const std::shared_ptr<const CameraLink> link_;
    const Claim watch_{link_->Watch(*this)};
    const Module& stream_;  // compared only
    const bool sendsPairs_;
    const BufferMemory memory_;
    std::atomic<State> state_{State::Idle};               // changed by the pool only
    std::list<std::shared_ptr<Buffer>>::iterator place_;  // the pool's
    mutable std::mutex mutex_;
    bool hasFrame_ = false;  // guarded by mutex_
    FrameInfo frame_;        // guarded by mutex_
};

}  // namespace ZelCti
