// Data streams.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "producers/server/base/claim.h"
#include "producers/server/modules/bufferpool.h"
#include "producers/server/modules/module.h"
#include "producers/server/registers/featuretable.h"
#include "producers/simulator/camera/camera.h"

namespace ZelSim {

// A stream of an open device: its buffers, their queues, and the receiver of frames. Thread-safe.
//
//   open --Announce*, Queue*--> ready --Start--> grabbing --Stop--> ready
//
// Frames come when the camera acquires as well. When it is unplugged the stream ends by itself;
// what remains to be done for closing still works.
class Stream final : public Module {
  public:
    static bool IsKind(Kind kind) { return kind == Kind::Stream; }

    Stream(std::shared_ptr<Camera> camera, const std::string& id, Claim claim);

    const Camera* GetCamera() const override { return camera_.get(); }
    void GetInfo(Answer answer) const;
    void GetFlowInfo(uint32_t index, Answer answer) const;
    BufferPool& Pool() { return *pool_; }

    // Memory of the client.
    static Handle Announce(const std::shared_ptr<Stream>& stream, void* base, size_t size,
                           void* userPointer, bool composite);

    // Memory of this side.
    static Handle Allocate(const std::shared_ptr<Stream>& stream, size_t size, void* userPointer);

    void Start(GenTL::ACQ_START_FLAGS flags, uint64_t numFrames);
    void Stop(GenTL::ACQ_STOP_FLAGS flags);

  private:
    static Handle Announce(const std::shared_ptr<Stream>& stream, BufferMemory memory);

    bool IsGrabbing() const;
    std::shared_ptr<Receiver> GetReceiver() const;
    void EndReceiver(bool kill);
    bool AnswerCount(Answer answer) const;
    size_t PayloadSize() const { return static_cast<size_t>(camera_->Settings()->PayloadSize()); }

    std::shared_ptr<Event> MakeEvent(GenTL::EVENT_TYPE type) override;
    std::unique_ptr<const Description> MakeDescription() const override;
    BytesSource Info(int32_t command) const;
    void AddInformation();
    void AddBufferHandling();
    void AddCounts();
    void AddLayout();
    void CheckBufferHandling(uint64_t mode) const;
    void OnClosing() override;
    void OnClose() override { claim_.reset(); }

    const std::shared_ptr<Camera> camera_;
    Claim claim_;
    const std::shared_ptr<BufferPool> pool_;
    std::mutex startMutex_;  // held while the stream is started or stopped
    bool closed_ = false;    // guarded by startMutex_
    mutable std::mutex receiverMutex_;
    std::shared_ptr<Receiver> receiver_;  // guarded by receiverMutex_; while the stream is started
    FeatureTable features_{Registers(), Port().portName, Caching::Off};
};

}  // namespace ZelSim
