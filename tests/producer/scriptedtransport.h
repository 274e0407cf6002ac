// A transport that does what a test says: its cameras are bytes, and its frames, events and
// failures come from the test. It keeps every rule of transport.h and adds nothing of its own.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "producers/transport.h"

namespace ZelTest {

// What the objects of the transports were asked to do, and what they fail with. Thread-safe.
class Script {
  public:
    // The next call of an operation throws this, before it does anything.
    template <typename Exception>
    void Fail(const std::string& operation, Exception exception) {
        const std::lock_guard lock(mutex_);
        failures_[operation] = [exception] { throw exception; };
    }
    void Meet(const std::string& operation);  // throws what Fail asked for

    // What opens, closes, starts and stops, in the order of the calls, since the last Take.
    void Note(const std::string& step);
    std::vector<std::string> Take();

    void Clear();

  private:
    std::mutex mutex_;
    std::map<std::string, std::function<void()>> failures_;  // guarded by mutex_
    std::vector<std::string> steps_;                         // guarded by mutex_
};

using AddRows = std::function<void(ZelCti::FeatureTable&)>;

class ScriptedStream;
class ScriptedConnection;

class ScriptedCamera final : public ZelCti::Camera,
                             public std::enable_shared_from_this<ScriptedCamera> {
  public:
    explicit ScriptedCamera(const std::string& id);

    const ZelCti::CameraInfo& Info() const override { return info; }
    std::string UserName() const override;
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const override;
    std::unique_ptr<ZelCti::Connection> Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                             ZelCti::CameraSink& sink) override;

    // What the test may change before the camera is opened.
    ZelCti::CameraInfo info;
    std::string userName;
    ZelCti::StreamInfo streamInfo;
    size_t payloadSize = 16;
    uint32_t numStreams = 1;
    std::vector<ZelCti::PortUrl> urls;
    bool holdsFrames = false;  // a Stop waits until it is killed
    AddRows deviceRows = [](ZelCti::FeatureTable&) {};
    AddRows streamRows = [](ZelCti::FeatureTable&) {};

    std::atomic<GenTL::DEVICE_ACCESS_STATUS> status{GenTL::DEVICE_ACCESS_STATUS_READWRITE};
    std::map<uint64_t, uint8_t> registers;        // those that are not there read as 0
    ScriptedConnection* connection = nullptr;     // the one opened last, and while it is there
    std::map<uint32_t, ScriptedStream*> streams;  // by index, while they are there
};

class ScriptedConnection final : public ZelCti::Connection {
  public:
    ScriptedConnection(std::shared_ptr<ScriptedCamera> camera, ZelCti::CameraSink& sink);
    ~ScriptedConnection() override;

    void Read(uint64_t address, void* buffer, size_t size) override;
    void Write(uint64_t address, const void* buffer, size_t size) override;
    std::vector<ZelCti::PortUrl> DescriptionUrls() override { return camera_->urls; }
    uint32_t NumStreams() const override;
    std::unique_ptr<ZelCti::StreamEngine> OpenStream(uint32_t index,
                                                     ZelCti::BufferQueue& buffers) override;
    void AddFeatures(ZelCti::FeatureTable& features) override { camera_->deviceRows(features); }
    void Close() noexcept override;

    // Reports of the camera; nothing when the connection is closed.
    void Send(GenTL::EVENT_TYPE type, uint64_t id, const std::string& data);
    void Lose();

  private:
    const std::shared_ptr<ScriptedCamera> camera_;
    std::mutex sinkMutex_;
    ZelCti::CameraSink* sink_;  // guarded by sinkMutex_; null when closed
};

class ScriptedStream final : public ZelCti::StreamEngine {
  public:
    ScriptedStream(std::shared_ptr<ScriptedCamera> camera, uint32_t index,
                   ZelCti::BufferQueue& buffers);
    ~ScriptedStream() override;

    const ZelCti::StreamInfo& Info() const override { return camera_->streamInfo; }
    size_t PayloadSize() const override;
    void Start(uint64_t numFrames) override;
    void Stop(bool kill) override;
    void Kill() noexcept override;
    bool IsGrabbing() const noexcept override { return numLeft_ != 0; }
    void OnInput() noexcept override { ++numInputs; }
    void AddFeatures(ZelCti::FeatureTable& features) override { camera_->streamRows(features); }

    void End() { numLeft_ = 0; }

    // Delivers a frame in the next buffer, of whose bytes it fills those that fit; false without a
    // buffer.
    bool Send(const ZelCti::FrameInfo& frame, const std::vector<uint8_t>& bytes = {});

    ZelCti::BufferQueue& buffers;  // for frames that do not arrive
    std::atomic<int> numInputs{0};

  private:
    const std::shared_ptr<ScriptedCamera> camera_;
    const uint32_t index_;
    std::atomic<uint64_t> numLeft_{0};
    std::atomic<bool> isKilled_{false};
};

class ScriptedInterface final : public ZelCti::HostInterface {
  public:
    explicit ScriptedInterface(const std::string& id, ZelCti::CameraList cameras = {});

    const ZelCti::InterfaceInfo& Info() const override { return info; }
    void UpdateCameras(ZelCti::Deadline deadline) override;
    std::shared_ptr<const ZelCti::CameraList> Cameras() const override { return cameras_; }
    void AddFeatures(ZelCti::FeatureTable& features, const SelectedCamera& camera) override;

    ZelCti::InterfaceInfo info;
    ZelCti::CameraList present;       // what the next update finds
    ZelCti::Deadline lastDeadline{};  // of an update
    std::function<void(ZelCti::FeatureTable&, const SelectedCamera&)> rows;

  private:
    std::shared_ptr<const ZelCti::CameraList> cameras_;
};

class ScriptedTransport final : public ZelCti::Transport {
  public:
    explicit ScriptedTransport(ZelCti::InterfaceList interfaces = {});

    void UpdateInterfaces(ZelCti::Deadline deadline) override;
    std::shared_ptr<const ZelCti::InterfaceList> Interfaces() const override { return interfaces_; }

    ZelCti::InterfaceList present;  // what the next update finds

  private:
    std::shared_ptr<const ZelCti::InterfaceList> interfaces_;
};

// What the producer is made of, and the script of all its objects.
struct ScriptedProducer {
    std::vector<std::shared_ptr<ZelCti::Transport>> transports;
    Script script;

    static ScriptedProducer& Instance();
};

}  // namespace ZelTest
