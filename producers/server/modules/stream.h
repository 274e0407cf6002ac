// Data streams.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "producers/server/base/claim.h"
#include "producers/server/modules/bufferpool.h"
#include "producers/server/modules/cameralink.h"
#include "producers/server/modules/localmodule.h"

namespace ZelCti {

// A stream of an open device: its buffers, their queues, and the engine that fills them.
// Thread-safe.
//
//   open --Announce*, Queue*--> ready --Start--> grabbing --Stop--> ready
//
// Frames come when the camera acquires as well. When it is unplugged the stream ends by itself;
// what remains to be done for closing still works.
class Stream final : public LocalModule {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::Stream; }

    Stream(std::shared_ptr<CameraLink> link, uint32_t index, const std::string& id, Claim claim);

    const CameraLink* Link() const override { return link_.get(); }
    void GetInfo(Answer answer) const;
    void GetFlowInfo(uint32_t index, Answer answer) const;
    BufferPool& Pool() { return *pool_; }

    // Memory of the client.
    static Handle Announce(const std::shared_ptr<Stream>& stream, void* base, size_t size,
                           void* userPointer, bool composite);

    // Memory of this side.
    static Handle Allocate(const std::shared_ptr<Stream>& stream, size_t size, void* userPointer);

    void Queue(Buffer& buffer);
    void Flush(GenTL::ACQ_QUEUE_TYPE operation);
    void Start(GenTL::ACQ_START_FLAGS flags, uint64_t numFrames);
    void Stop(GenTL::ACQ_STOP_FLAGS flags);

  private:
    static Handle Announce(const std::shared_ptr<Stream>& stream, BufferMemory memory);

    bool AnswerCount(Answer answer) const;
    size_t PayloadSize() const;  // throws GC_ERR_NOT_AVAILABLE if the camera's features define it

    std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type) override;
    void AddFeatures(FeatureTable& features) override;
    BytesSource Info(int32_t command) const;
    void AddInformation(FeatureTable& features);
    void AddBufferHandling(FeatureTable& features);
    void AddCounts(FeatureTable& features);
    void AddLayout(FeatureTable& features);
    void CheckBufferHandling(uint64_t mode) const;
    void OnClosing() noexcept override;
    void OnClose() noexcept override { claim_.reset(); }

    const std::shared_ptr<CameraLink> link_;
    const Claim watch_{link_->Watch(*this)};
    Claim claim_;
    const std::shared_ptr<BufferPool> pool_;
    const std::unique_ptr<StreamEngine> engine_;
    const StreamInfo& info_;
    std::mutex startMutex_;   // held while the stream is started or stopped
    bool isStarted_ = false;  // guarded by startMutex_
    bool closed_ = false;     // guarded by startMutex_
};

}  // namespace ZelCti
