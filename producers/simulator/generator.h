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
// A camera with a frame rate sends at fixed points in time, counted from the start so that no error
// adds up; each frame is under way for the last part of its period, and is lost as an under-run
// when no buffer is queued then. At frame rate 0 the camera waits for a buffer and sends at once.
// Start and Stop are thread-bound; IsGrabbing is thread-safe.
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
    bool Acquire(uint64_t id);  // false when there is no buffer for this frame
    bool IsLost(uint64_t id) const;
    void Fill(Buffer& buffer, uint64_t id);
    void Report(EventKind kind, std::optional<uint64_t> frameId = {});
    void Draw(const Buffer& buffer, uint64_t id, FrameInfo& frame);
    Clock::time_point EndOf(uint64_t id) const;

    const std::shared_ptr<Camera> camera_;
    const std::shared_ptr<BufferPool> pool_;
    std::shared_ptr<const TestPicture> picture_;
    std::thread thread_;
    std::atomic<bool> grabbing_{false};
    Clock::time_point start_;
    Clock::duration transfer_{};  // how long a frame is under way
};

}  // namespace ZelSim

#endif  // ZELSIM_GENERATOR_H
