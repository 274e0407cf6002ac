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

#include "producers/server/modules/module.h"
#include "producers/simulator/camera/camera.h"

namespace ZelSim {

// What a frame left in a buffer.
struct FrameInfo {
    std::shared_ptr<const FrameSettings> settings;
    uint64_t id = 0;
    uint64_t timestampNs = 0;
    size_t sizeFilled = 0;
    size_t deliveredHeight = 0;
    ChunkSet chunks;  // that came with the frame
    bool incomplete = false;
    bool tooLarge = false;  // larger than the buffer
};

// Memory that a client gave or had allocated.
struct BufferMemory {
    uint8_t* base;
    size_t size;
    void* userPointer;
    bool composite;                                                    // announced with segments
    std::unique_ptr<void, void (*)(void*)> owned{nullptr, std::free};  // null: the client's
};

// A buffer of a stream. Its place among the buffers belongs to the BufferPool; the frame it holds
// is written by the camera's thread before it is delivered. Thread-safe.
//
//   idle --queue--> input --taken--> acquiring --deliver--> output --fetched--> idle
//
// DSFlushQueue moves buffers between idle, input and output.
class Buffer final : public Module {
  public:
    enum class State : uint8_t { Idle, Input, Acquiring, Output, Revoked };

    static bool IsKind(Kind kind) { return kind == Kind::Buffer; }

    Buffer(std::shared_ptr<Camera> camera, const Module& stream, BufferMemory memory);

    const Camera* GetCamera() const override { return camera_.get(); }
    const BufferMemory& Memory() const { return memory_; }
    bool IsOf(const Module& stream) const { return &stream_ == &stream; }

    void SetFrame(FrameInfo frame);
    void ClearFrame();

    void GetInfo(Answer answer) const;
    void GetSegmentInfo(Answer answer) const;

    // Throws GC_ERR_NO_DATA when the frame has none.
    std::vector<ChunkPlace> Chunks() const;

  private:
    friend class BufferPool;

    bool AnswerMemory(Answer answer) const;
    bool AnswerState(Answer answer) const;
    bool AnswerGeometry(Answer answer) const;
    bool AnswerFrame(Answer answer) const;
    bool AnswerChunks(Answer answer) const;
    const FrameInfo& Frame() const;  // throws GC_ERR_NOT_AVAILABLE without one

    const std::shared_ptr<Camera> camera_;
    const Module& stream_;  // compared only
    const BufferMemory memory_;
    std::atomic<State> state_{State::Idle};               // changed by the pool only
    std::list<std::shared_ptr<Buffer>>::iterator place_;  // the pool's
    mutable std::mutex mutex_;
    bool hasFrame_ = false;  // guarded by mutex_
    FrameInfo frame_;        // guarded by mutex_
};

}  // namespace ZelSim
