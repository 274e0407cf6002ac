// An open camera on a network.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "producers/gigevision/base/devicelink.h"
#include "producers/gigevision/control/controlengine.h"
#include "producers/gigevision/control/privilege.h"
#include "producers/gigevision/description/cacheddescription.h"
#include "producers/transport.h"

namespace ZelGev {

struct ConnectionSettings {
    RequestLimits limits;
    Milliseconds heartbeat{3000};  // a camera without a controller for so long is free again

    // How long to wait for a camera that another controls: the heartbeat and a second after a crash
    // of its controller on another machine.
    Milliseconds patience{0};

    // Takes the control over from a controller that allows it to who knows the key, and allows it
    // to others.
    std::optional<uint16_t> switchoverKey;

    std::string cacheFolder;  // for descriptions, see DescriptionCache
};

// The settings of the user's environment: ZELGEV_WAIT, the patience in milliseconds,
// ZELGEV_SWITCHOVER_KEY, and the folder of caches.
ConnectionSettings SettingsOfEnvironment();

struct ConnectionTarget {
    Route place;
    std::shared_ptr<const ZelCti::Camera> camera;
};

// Opens a camera with the settings of the environment; throws what the constructor of GevConnection
// throws. `use` is kept until the connection is destroyed: its owner learns by it that the camera
// is open here.
std::unique_ptr<ZelCti::Connection> OpenGevConnection(ConnectionTarget target,
                                                      GenTL::DEVICE_ACCESS_FLAGS access,
                                                      ZelCti::CameraSink& sink,
                                                      std::shared_ptr<const void> use);

// Controls a camera, or reads it only, until it is closed. Loss of control is loss of the camera.
class GevConnection final : public ZelCti::Connection, private DeviceLink {
  public:
    // Throws GC_ERR_ACCESS_DENIED when another has control, with its address, GC_ERR_TIMEOUT when
    // the camera does not answer, and what else RegisterPort throws.
    //
    // When a process of this machine has ended without a word, its camera says that this machine
    // controls it from a port that is free again: the connection takes that port, and need not
    // wait, unless the camera was open exclusively or does not name who controls it.
    GevConnection(ConnectionTarget target, GenTL::DEVICE_ACCESS_FLAGS access,
                  ZelCti::CameraSink& sink, const ConnectionSettings& settings,
                  std::shared_ptr<const void> use = nullptr);
    ~GevConnection() override;

    void Read(uint64_t address, void* buffer, size_t size) override;
    void Write(uint64_t address, const void* buffer, size_t size) override;
    std::vector<ZelCti::PortUrl> DescriptionUrls() override;
    uint32_t NumStreams() const override { return facts_.numStreams; }
    std::unique_ptr<ZelCti::StreamEngine> OpenStream(uint32_t index,
                                                     ZelCti::BufferQueue& buffers) override;
    void AddFeatures(ZelCti::FeatureTable& features) override;
    void Close() noexcept override;

    DeviceLink& Link() { return *this; }

  private:
    struct Channel {
        Channel(const Route& route, uint16_t localPort, RequestLimits limits,
                ControlEngine::OnLost onLost)
            : engine({route.hostAddress, localPort}, route.camera, limits, std::move(onLost)),
              port(engine) {}

        ControlEngine engine;
        RegisterPort port;
    };

    const Route& Place() const override { return target_.place; }
    bool Controls() const override { return controls_; }
    uint32_t ReadRegister(uint32_t address) override;
    void WriteRegister(uint32_t address, uint32_t value) override;
    uint32_t Capabilities() const override { return facts_.gvcpCapabilities; }
    uint64_t TickFrequency() const override { return facts_.tickFrequency; }
    bool IsLost() const override { return channel_->engine.IsLost(); }

    std::optional<ZelCti::PortUrl> UrlOf(const std::string& text);
    void Connect(uint16_t localPort);
    void TakeControl(uint32_t ccp);
    bool TakePortOfPredecessor(const ZelCti::Endpoint& holder);
    void SetUp();
    void StartHeartbeat();
    void FollowHeartbeatTimeout();
    void OpenMessageChannel();
    void ReportLoss(const std::string& reason);
    void ReportEvent(uint16_t id, ZelCti::ByteView message);

    std::vector<ZelCti::Gvcp::RegisterWrite> LastWrites() const;

    const ConnectionTarget target_;
    const std::shared_ptr<const void> use_;
    const ConnectionSettings settings_;
    const bool controls_;
    ZelCti::CameraSink& sink_;
    std::atomic<bool> isOpen_{false};  // losses are reported
    CameraFacts facts_;
    mutable std::mutex mutex_;
    std::set<uint32_t> openedStreams_;  // guarded by mutex_; also those that are closed again
    uint32_t heartbeatBefore_ = 0;      // in the camera, when it was opened
    std::unique_ptr<Channel> channel_;
    CachedDescription description_;
};

}  // namespace ZelGev
