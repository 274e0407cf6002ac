// What there is of a camera on a network while it has power.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "producers/simulator/gige/control/bootstrapregisters.h"
#include "producers/simulator/gige/control/controlserver.h"
#include "producers/simulator/gige/control/messagechannel.h"
#include "producers/simulator/gige/control/networkhardware.h"
#include "producers/simulator/gige/sockets/addresspool.h"
#include "producers/simulator/gige/stream/streamchannel.h"
#include "producers/simulator/simulatedcamera.h"

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

// The camera with its registers, channels and control server. It has no sockets for commands and
// events: the thread of the device hands it what comes in and tells it the time. Operations are for
// that thread, but those that say otherwise.
class PoweredCamera final : private NetworkHardware {
  public:
    using Time = std::chrono::steady_clock::time_point;

    // The ways out of it. None waits, and `powerCycle` takes effect after it returns.
    struct Links {
        ControlServer::Send sendAnswer;
        MessageChannel::Send sendMessage;
        std::function<void()> wake;  // lets the thread look at NextDeadline; from any thread
        std::function<void()> powerCycle;
    };

    // The body and what the links use outlive it.
    PoweredCamera(const CameraConfig& config, PermanentMemory memory, NetworkBody& body,
                  uint32_t address, Links links);
    ~PoweredCamera() override;

    Time NextDeadline(Time now) const;
    void OnTimer(Time now);
    void OnCommand(ZelCti::ByteView datagram, const ZelCti::Endpoint& from, bool broadcast,
                   Time now);
    void OnMessageAck(ZelCti::ByteView datagram, Time now) { messages_.OnAck(datagram, now); }

    // The camera has another address. The channels of its streams are closed: nothing is sent from
    // the old one.
    void MoveTo(uint32_t address);

    std::optional<ZelCti::Endpoint> Controller() const { return privilege_.Holder(); }

    // What it keeps without power; from any thread, as what follows.
    PermanentMemory CopyMemory() const { return camera_->Memory(); }
    void FireTestEvent();
    void AddTo(NetworkStatistics& statistics) const;

  private:
    using Streams = std::vector<std::unique_ptr<StreamChannel>>;

    std::shared_ptr<const NetworkSettings> Settings() const override { return body_.Settings(); }
    uint16_t MessageSourcePort() const override { return body_.MessageSourcePort(); }
    IpMemory Memory() const override { return body_.Memory(); }
    void SetMemory(const IpMemory& memory) override { body_.SetMemory(memory); }
    void ForceIp(const ZelCti::IpSettings& ip) override { body_.ForceIp(ip); }

    uint32_t NumStreams() const override;
    uint32_t StreamCapability() const override;
    uint16_t StreamSourcePort(uint32_t channel) const override;
    void SetStreamPort(uint32_t channel, uint16_t port) override;
    void SetStreamDestination(uint32_t channel, uint32_t address) override;
    uint32_t SetStreamPacketSize(uint32_t channel, uint32_t scps) override;
    void SetStreamDelay(uint32_t channel, uint32_t ticks) override;
    void SetStreamConfiguration(uint32_t channel, uint32_t sccfg) override;
    void SetExtendedIds(bool on) override;
    void SetStatusCodes(bool on) override;
    void FireTestPacket(uint32_t channel) override;
    void Resend(const ZelCti::Gvcp::PacketResend& request, const ZelCti::Endpoint& from) override;
    void SetMessagePort(uint16_t port) override { messages_.SetPort(port); }
    void SetMessageDestination(uint32_t address) override { messages_.SetAddress(address); }
    void SetMessageTimeout(uint32_t milliseconds) override { messages_.SetTimeout(milliseconds); }
    void SetMessageRetries(uint32_t count) override { messages_.SetRetries(count); }
    void SendEvent(uint16_t id) override;
    void SetTimestampToZero() override { camera_->Hardware().SetClock(0); }
    void Act(uint32_t signal) override;

    SimulatedCamera::Surroundings MakeSurroundings(std::function<void()> powerCycle);
    Streams MakeStreams(uint32_t address) const;
    StreamChannel& Stream(uint32_t channel) const { return *streams_.at(channel); }

    NetworkBody& body_;
    MessageChannel messages_;
    const std::shared_ptr<SimulatedCamera> camera_;
    const ZelCti::Claim subscription_;
    mutable std::mutex
        streamsMutex_;  // held where the streams are replaced, or others look at them
    Streams streams_;
    ControlPrivilege privilege_;
    BootstrapRegisters registers_;
    ControlServer control_;
};

}  // namespace ZelSim
