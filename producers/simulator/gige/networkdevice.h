// A simulated camera on a network.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "producers/simulator/gige/control/bootstrapregisters.h"
#include "producers/simulator/gige/control/controlserver.h"
#include "producers/simulator/gige/control/messagechannel.h"
#include "producers/simulator/gige/control/networkhardware.h"
#include "producers/simulator/gige/sockets/addresspool.h"
#include "producers/simulator/gige/sockets/udpsocket.h"
#include "producers/simulator/gige/stream/streamchannel.h"
#include "producers/simulator/simulatedcamera.h"
#include "producers/wire/bootstrap.h"

namespace ZelSim {

// What a device has received and sent since it was started.
struct NetworkStatistics {
    uint64_t datagrams = 0;  // commands and acknowledges
    uint64_t ignored = 0;    // datagrams that came in on an interface that is not served
    uint64_t blocks = 0;
    uint64_t lostBlocks = 0;  // that never were on the network
    uint64_t packets = 0;
    uint64_t resent = 0;
};

// A camera of its own, with sockets at its address and a thread that serves them: commands, events
// and what has to be done at a time. Streams have threads of their own. It answers and sends on one
// network interface only. Thread-safe.
class NetworkDevice final : private NetworkHardware {
  public:
    // Gets a line for users: who is served, who connects. Called by any thread.
    using Report = std::function<void(const std::string& line)>;

    // Where an address can be served; none where it must not. Thread-safe.
    using FindPlace = std::function<std::optional<HostAddress>(uint32_t address)>;

    // Throws GC_ERR_RESOURCE_IN_USE when another program serves a camera at that place, GC_ERR_IO
    // when there cannot be sockets.
    NetworkDevice(const CameraConfig& config, const HostAddress& place, FindPlace find,
                  Report report);
    ~NetworkDevice() override;

    const std::string& Id() const { return config_.id; }

    // The camera shows these at once; the switches of its address take it there with MoveTo only.
    NetworkSwitches& Switches() { return switches_; }

    // Gives the camera another address, without a word to its applications. Throws as the
    // constructor does, and leaves the camera where it is then.
    void MoveTo(const HostAddress& place);
    HostAddress Place() const;

    // Off, silent for a while, and on again with the settings of power-on. Returns at once.
    void PowerCycle();

    // Lets the camera send its test event, if an application wants events.
    void FireTestEvent();

    NetworkStatistics Statistics() const;

    // Where the camera is and who controls it, in words for users.
    std::string Describe() const;

  private:
    using Time = std::chrono::steady_clock::time_point;

    using Streams = std::vector<std::unique_ptr<StreamChannel>>;

    // Those at an address. Events come from the same port everywhere; 0 is any free one.
    struct Sockets {
        Sockets(const HostAddress& place, uint16_t messagePort);

        const HostAddress place;
        UdpSocket control;
        UdpSocket messages;
        UdpSocket limited;                  // for broadcasts to 255.255.255.255
        std::optional<UdpSocket> directed;  // and to the subnet
    };

    // What there is while the camera has power.
    struct Powered {
        Powered(NetworkDevice& device, PermanentMemory memory);
        ~Powered();
        Powered(const Powered&) = delete;
        Powered& operator=(const Powered&) = delete;

        MessageChannel messages;
        const std::shared_ptr<SimulatedCamera> camera;
        const ZelCti::Claim subscription;
        Streams streams;
        ControlPrivilege privilege;
        BootstrapRegisters registers;
        ControlServer control;
    };

    // NetworkHardware, for registers and control server.
    std::shared_ptr<const NetworkSettings> Settings() const override;
    uint32_t NumStreams() const override;
    uint32_t StreamCapability() const override;
    uint16_t StreamSourcePort(uint32_t channel) const override;
    void SetStreamPort(uint32_t channel, uint16_t port) override;
    void SetStreamDestination(uint32_t channel, uint32_t address) override;
    uint32_t SetStreamPacketSize(uint32_t channel, uint32_t scps) override;
    void SetStreamDelay(uint32_t channel, uint32_t ticks) override;
    void SetStreamConfiguration(uint32_t channel, uint32_t sccfg) override;
    void SetExtendedIds(bool on) override;
    void FireTestPacket(uint32_t channel) override;
    void Resend(const ZelCti::Gvcp::PacketResend& request, const Endpoint& from) override;
    uint16_t MessageSourcePort() const override;
    void SetMessagePort(uint16_t port) override;
    void SetMessageDestination(uint32_t address) override;
    void SetMessageTimeout(uint32_t milliseconds) override;
    void SetMessageRetries(uint32_t count) override;
    void SendEvent(uint16_t id) override;
    IpMemory Memory() const override;
    void SetMemory(const IpMemory& memory) override;
    void SetTimestampToZero() override;
    void ForceIp(const IpSettings& ip) override;
    void Act(uint32_t signal) override;

    void Run();
    bool WaitForWork();
    Time NextDeadline() const;
    void Wake() const;
    void FollowOrders();
    void ReceiveAll();
    void ReceiveCommands(const Sockets& from, UdpSocket& socket, bool broadcast, bool ignored);
    void ReceiveAcks();
    bool IsServed(const UdpSocket::Datagram& datagram);
    void SwitchOff();
    void SwitchOn();
    void Use(std::unique_ptr<Sockets> sockets);
    void MoveStreams();
    void RestartIp();
    void ReportChanges();
    std::shared_ptr<Powered> Power() const;
    SimulatedCamera::Surroundings MakeSurroundings();
    Streams MakeStreams(Camera& camera, const HostAddress& place) const;
    StreamChannel& Stream(uint32_t channel) const { return *powered_->streams.at(channel); }

    const CameraConfig config_;
    const FindPlace find_;
    const Report report_;
    NetworkSwitches switches_;
    const int wake_;  // an eventfd

    // Belong to the thread once it runs.
    std::shared_ptr<Sockets> sockets_;  // of the present address
    bool hasMoved_ = false;             // which is to be reported
    const uint16_t messagePort_;
    PermanentMemory permanent_;  // of the camera while it has no power
    Time onAgain_{};             // when there is power again

    mutable std::mutex mutex_;          // guards what follows
    std::shared_ptr<Powered> powered_;  // changed by the thread, its streams as well
    HostAddress place_;
    IpSettings home_;                // what it gets at power-on without a persistent address
    std::unique_ptr<Sockets> next_;  // of the address that was asked for
    uint64_t numFollowed_ = 0;
    std::condition_variable followed_;  // numFollowed_ has changed
    bool wantsPowerCycle_ = false;
    bool isQuitting_ = false;
    IpMemory ipMemory_;
    NetworkStatistics received_;
    std::optional<Endpoint> controller_;

    std::thread thread_;
};

}  // namespace ZelSim
