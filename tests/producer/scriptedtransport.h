// A transport that does what a test says: its cameras are bytes, and its frames, events and
// failures come from the test. It keeps every rule of transport.h and adds nothing of its own.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "producers/transport.h"

namespace ZelTest {

// What the producer is made of, what its objects were asked to do, and what they fail with.
class Script {
  public:
    static Script& Instance();

    std::vector<std::shared_ptr<ZelCti::Transport>> transports;

    // The next call of an operation throws this, before it does anything.
    template <typename Exception>
    void Fail(const std::string& operation, Exception exception) {
        const std::lock_guard lock(mutex_);
        failures_[operation] = [exception] { throw exception; };
    }
    void Meet(const std::string& operation);  // throws what Fail asked for

    // What opens, closes, starts, stops and ends, in the order of the calls, since the last Take.
    void Note(const std::string& step);
    std::vector<std::string> Take();

  private:
    std::mutex mutex_;
    std::map<std::string, std::function<void()>> failures_;  // guarded by mutex_
    std::vector<std::string> steps_;                         // guarded by mutex_
};

class ScriptedStream;

class ScriptedCamera final : public ZelCti::Camera,
                             public std::enable_shared_from_this<ScriptedCamera> {
  public:
    using AddRows = std::function<void(ZelCti::FeatureTable&)>;

    explicit ScriptedCamera(const std::string& id);

    const ZelCti::CameraInfo& Info() const override { return info; }
    std::string UserName() const override;
    std::string DisplayName() const override { return displayName; }
    std::optional<ZelCti::CameraNetwork> Network() const override { return network; }
    uint64_t TimestampFrequency() const override { return timestampFrequency; }
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const override;
    std::string AccessReason() const override { return accessReason; }
    std::unique_ptr<ZelCti::Connection> Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                             ZelCti::CameraSink& sink) override;

    // Reports to the client that has opened the camera last, until it has closed it.
    void Report(GenTL::EVENT_TYPE type, uint64_t id, const std::string& data);
    void Lose();

    // What a test may change before the camera is opened.
    ZelCti::CameraInfo info;
    std::string userName;
    std::string displayName;
    uint64_t timestampFrequency = 1000;
    std::optional<ZelCti::CameraNetwork> network;
    std::string accessReason = "controlled by 10.0.0.7:40000";
    ZelCti::StreamInfo streamInfo;
    size_t payloadSize = 16;
    uint32_t numStreams = 1;
    bool holdsFrames = false;  // a Stop waits until it is killed
    std::vector<ZelCti::PortUrl> urls;
    AddRows deviceRows = [](ZelCti::FeatureTable&) {};
    AddRows streamRows = [](ZelCti::FeatureTable&) {};

    std::atomic<GenTL::DEVICE_ACCESS_STATUS> status{GenTL::DEVICE_ACCESS_STATUS_READWRITE};
    std::map<uint64_t, uint8_t> registers;  // those that are not there read as 0; not locked
    std::mutex streamsMutex;
    std::map<uint32_t, ScriptedStream*> streams;  // guarded by streamsMutex; by index, if open
    std::mutex sinkMutex;
    ZelCti::CameraSink* sink = nullptr;  // guarded by sinkMutex; null when closed
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

    // Delivers a frame in the next buffer, with the bytes that fit; false without a buffer.
    bool Send(const ZelCti::FrameInfo& frame, const std::vector<uint8_t>& bytes = {});
    void End() { numLeft_ = 0; }

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
    bool HasSearched() const override { return !needsSearch || lastDeadline != ZelCti::Deadline{}; }
    void AddFeatures(ZelCti::FeatureTable& features, const SelectedCamera& camera) override {
        rows(features, camera);
    }

    ZelCti::InterfaceInfo info;
    bool needsSearch = false;         // to find cameras
    ZelCti::CameraList present;       // what the next update finds
    ZelCti::Deadline lastDeadline{};  // of an update
    std::function<void(ZelCti::FeatureTable&, const SelectedCamera&)> rows = [](auto&, auto&) {};

  private:
    std::shared_ptr<const ZelCti::CameraList> cameras_;
};

class ScriptedTransport final : public ZelCti::Transport {
  public:
    explicit ScriptedTransport(ZelCti::InterfaceList interfaces = {})
        : present(std::move(interfaces)),
          interfaces_(std::make_shared<const ZelCti::InterfaceList>(present)) {}

    void UpdateInterfaces(ZelCti::Deadline deadline) override;
    std::shared_ptr<const ZelCti::InterfaceList> Interfaces() const override { return interfaces_; }

    ZelCti::InterfaceList present;  // what the next update finds

  private:
    std::shared_ptr<const ZelCti::InterfaceList> interfaces_;
};

}  // namespace ZelTest
