// The thread that makes frames.
#ifndef ZELSIM_GENERATOR_H
#define ZELSIM_GENERATOR_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <thread>

#include "producers/simulator/bufferpool.h"
#include "producers/simulator/camera.h"

namespace ZelSim {

// Fills the buffers of a pool with the frames of a camera: the acquisition engine of one stream.
//
//   stopped --Start--> grabbing --number reached, camera gone--> ended --Stop--> stopped
//                      grabbing --Stop--> stopped
//
// While it grabs it follows the camera's control: it pauses while the acquisition is disabled, when
// a single or multiple frames are done, and until a trigger where frames are triggered. Settings
// are taken anew for each frame.
// A camera with a frame rate sends at fixed points in time, counted from a first frame so that no
// error adds up; each frame is under way for the last part of its period, and is lost as an
// under-run when no buffer is queued then. Without one the camera waits for a buffer and sends at
// once. Start and Stop are thread-bound; IsGrabbing is thread-safe.
class Generator {
  public:
    Generator(std::shared_ptr<Camera> camera, std::shared_ptr<BufferPool> pool)
        : camera_(std::move(camera)), pool_(std::move(pool)) {}
    ~Generator() { Stop(BufferPool::Halt::Now); }
    Generator(const Generator&) = delete;
    Generator& operator=(const Generator&) = delete;

    bool IsStarted() const { return thread_.joinable(); }
    bool IsGrabbing() const { return grabbing_.load(); }

    void Start(uint64_t numFrames);
    void Stop(BufferPool::Halt halt);

  private:
    using Clock = BufferPool::Clock;

    void Run(uint64_t numFrames);
    bool AwaitTurn();
    bool AwaitDue();
    bool IsDue();
    bool IsAcquiring() const;
    void ReportAcquisition(bool acquires);
    void Restart();
    void FollowRate();
    bool Acquire();  // false when there is no buffer for this frame
    bool IsLost() const;
    void Fill(Buffer& buffer);
    void Draw(const Buffer& buffer, FrameInfo& frame);
    void AppendChunks(uint8_t* payload, FrameInfo& frame) const;
    void Report(EventKind kind, std::optional<uint64_t> frameId = {});
    Clock::time_point StartOf(uint64_t id) const;

    const std::shared_ptr<Camera> camera_;
    const std::shared_ptr<BufferPool> pool_;
    Claim locked_;    // the camera's settings of the image, while grabbing
    Claim listener_;  // to the camera's control
    std::thread thread_;
    std::atomic<bool> grabbing_{false};

    // What follows belongs to the thread.
    std::shared_ptr<const FrameSettings> settings_;
    uint64_t id_ = 0;        // of the next frame
    uint64_t numLeft_ = 0;   // frames until the camera pauses
    uint64_t starts_ = 0;    // of the acquisition that were followed
    uint64_t triggers_ = 0;  // that were followed
    bool wasTriggered_ = false;
    bool acquires_ = false;   // as the events of the camera tell
    double frameRate_ = 0;    // that frames are paced with; 0 for those that are not
    Clock::time_point base_;  // when frame baseId_ starts
    uint64_t baseId_ = 0;
    Clock::duration transfer_{};  // how long a frame is under way
};

}  // namespace ZelSim

#endif  // ZELSIM_GENERATOR_H
