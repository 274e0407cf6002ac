// The acquisition of a camera: when it takes frames, and who gets them.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "producers/server/base/claim.h"
#include "producers/server/base/waitpoint.h"
#include "producers/simulator/camera/eventchannel.h"
#include "producers/simulator/frame/frame.h"
#include "producers/simulator/frame/frameschedule.h"
#include "producers/transport.h"

namespace ZelSim {

class Camera;

// The end of a stream: where its buffers come from, and how many frames it wants.
class Receiver {
  public:
    // `onBegin` is called when an acquisition begins that the receiver gets frames of, with the
    // acquisition locked.
    explicit Receiver(ZelCti::BufferQueue& buffers, std::function<void()> onBegin = {})
        : buffers_(buffers), onBegin_(std::move(onBegin)) {}

    // False when the frames that were wanted are there, or when no more will come. Thread-safe.
    bool IsGrabbing() const { return grabbing_.load(); }

  private:
    friend class Acquisition;

    // What follows is guarded by the mutex of the acquisition, except that the thread may fill and
    // deliver a buffer without it.
    ZelCti::BufferQueue& buffers_;
    const std::function<void()> onBegin_;
    std::atomic<bool> grabbing_{false};
    uint64_t numLeft_ = 0;
    ZelCti::FrameBuffer* buffer_ = nullptr;  // for the frame that is being read out
    bool isFinishing_ = false;               // it gets no further frame
    bool isKilled_ = false;                  // and does not wait for this one, either

    // What follows belongs to the thread.
    std::optional<ZelCti::FrameInfo> sent_;  // the frame that is being sent, unless it is lost
    Receiver* next_ = nullptr;               // that gets the frame as well
};

// The acquisition of a camera, with the thread that takes its frames while streams are started.
//
//   idle --Start--> acquiring --number of frames reached--> idle
//                   acquiring --Stop--> stopping --frame under way is sent--> idle
//                   acquiring, stopping --Abort, last stream detached, Unplug--> idle
//
// A frame is exposed, then read out and sent; FrameSchedule says when. Each stream that is started
// and has a buffer when the read-out begins gets it; for others it is lost, and for all when there
// is no memory to make it. A camera that keeps no time waits for a buffer and sends at once.
// Settings are those at the start of the exposure. Thread-safe.
class Acquisition {
  public:
    enum class Status : uint32_t { FrameTriggerWait, AcquisitionActive, FrameActive };
    static constexpr uint32_t kNumStatuses = 3;

    // What the thread of a camera with a frame rate adds to the nice value of the program.
    static constexpr int kNiceness = 5;

    explicit Acquisition(Camera& camera);
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    // Called by the features of the camera.

    // Throws GC_ERR_ACCESS_DENIED unless TLParamsLocked is 1 and a stream is started, GC_ERR_BUSY
    // while the camera acquires. A free-running camera asks for nothing of that, and one on a
    // network not for TLParamsLocked.
    void Start();
    void Stop();   // after the frame under way
    void Abort();  // without it
    void Trigger();
    bool NeedsLock() const;  // TLParamsLocked must become 1 before a start
    bool IsStopping() const;
    bool Is(Status status) const;

    // Called by streams. A free-running camera starts with the first stream. The acquisition of
    // every camera ends with the last one.

    // The stream is started, or, when it is so already, wants further frames. The receiver is
    // detached before it ends. Throws GC_ERR_IO for a camera that is unplugged.
    void Attach(Receiver& receiver, uint64_t numFrames);

    // The stream is stopped: waits for the frame that is on its way into one of its buffers, unless
    // `kill`. Nothing for a receiver that is not attached.
    void Detach(Receiver& receiver, bool kill);

    // Lets a Detach of another thread wait no longer.
    void Kill(Receiver& receiver);

    // A stream has a buffer in its input.
    void OnInput() {
        if (awaitsInput_) Wake();
    }

    // Nothing comes from the camera any more.
    void Unplug();

  private:
    using Clock = FrameSchedule::Clock;
    using Lock = std::unique_lock<std::mutex>;
    enum class Step { None, StartFrame, EndExposure, EndReadout };
    struct Due {
        Step step = Step::None;
        Clock::time_point time = ZelCti::WaitPoint::kEndless;
    };

    void Wake();
    void WakeThread();
    bool IsActive() const { return isAcquiring_ && !isStopping_ && numLeft_ != 0; }
    void Begin();
    void End();
    void EndIfIdle();
    void Cancel();
    void PutBack(Receiver& receiver);

    void Run();
    Due PlanStep(Clock::time_point now);
    Clock::time_point PlanStart(Clock::time_point now);
    bool FindInput();
    bool IsReady(const FrameSettings& settings) const;
    void StartFrame(Clock::time_point start);
    void EndExposure();
    void EndReadout(Lock& lock);
    void Write(Receiver& receiver);
    void Send(Receiver& receiver);
    void Report(EventKind kind, Clock::time_point time, std::optional<uint64_t> frameId = {});

    Camera& camera_;
    std::mutex attachMutex_;    // held while a stream is attached or detached
    mutable std::mutex mutex_;  // guards what follows, and the receivers
    ZelCti::WaitPoint wake_{mutex_};
    uint64_t numWakes_ = 0;
    std::vector<Receiver*> receivers_;  // changed with attachMutex_ held as well
    bool isQuitting_ = false;
    bool isAcquiring_ = false;
    bool isStopping_ = false;
    bool isSending_ = false;  // a frame is being sent, with the mutex unlocked
    ZelCti::Claim locked_;    // the settings that frames depend on, while the camera acquires
    FrameSchedule schedule_;
    std::shared_ptr<const FrameSettings> settings_;  // of the frame that is begun next
    uint64_t nextId_ = 0;
    uint64_t numLeft_ = 0;                        // frames until the acquisition ends
    std::optional<Clock::time_point> triggered_;  // for a frame that has not begun
    std::optional<Frame> exposed_;
    std::optional<Frame> readOut_;
    std::atomic<bool> awaitsInput_{false};
    std::thread thread_;      // guarded by attachMutex_
    ZelCti::Claim listener_;  // to the settings of the camera
};

}  // namespace ZelSim
