// What the control protocol of a served camera acts on.
#pragma once

#include <cstdint>
#include <memory>

#include "producers/simulator/config/networkswitches.h"
#include "producers/sockets/endpoint.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelSim {

// What a device keeps without power: its persistent address, and the bits of IpConfiguration that
// are on.
struct IpMemory {
    ZelCti::IpSettings persistent;
    uint32_t configuration = 0;
};

// What of a device needs no power, or lasts longer than it.
class NetworkBody {
  public:
    NetworkBody() = default;
    NetworkBody(const NetworkBody&) = delete;
    NetworkBody& operator=(const NetworkBody&) = delete;
    virtual ~NetworkBody() = default;

    // The switches, with the present address and the MAC address.
    virtual std::shared_ptr<const NetworkSettings> Settings() const = 0;

    virtual uint16_t MessageSourcePort() const = 0;

    virtual IpMemory Memory() const = 0;
    virtual void SetMemory(const IpMemory& memory) = 0;

    // The address is in effect when it returns. Address 0 starts the IP configuration anew, with
    // what Memory says.
    virtual void ForceIp(const ZelCti::IpSettings& ip) = 0;
};

// The device around a camera as its bootstrap registers and its control server see it: channels,
// addresses and the memory of these. Channels count from 0, and the callers keep to NumStreams.
//
// The operations named "Set" and those that only return something are called with the register
// space locked: they take no lock under which the space is accessed, and never wait for a thread
// that accesses it. The others are called by the thread of the control server, without that lock.
class NetworkHardware : public NetworkBody {
  public:
    // ---- Stream channels ----

    virtual uint32_t NumStreams() const = 0;
    virtual uint32_t StreamCapability() const = 0;  // bits of Scc
    virtual uint16_t StreamSourcePort(uint32_t channel) const = 0;

    // A port other than 0 opens the channel, 0 closes it: no packet is sent after that returns.
    virtual void SetStreamPort(uint32_t channel, uint16_t port) = 0;
    virtual void SetStreamDestination(uint32_t channel, uint32_t address) = 0;

    // The size with the other bits of SCPS but that for test packets. Returns what SCPS then is.
    virtual uint32_t SetStreamPacketSize(uint32_t channel, uint32_t scps) = 0;
    virtual void SetStreamDelay(uint32_t channel, uint32_t ticks) = 0;
    virtual void SetStreamConfiguration(uint32_t channel, uint32_t sccfg) = 0;
    virtual void SetExtendedIds(bool on) = 0;  // of all channels

    // Whether refused resends say why, by the status codes of 1.1; of all channels.
    virtual void SetStatusCodes(bool on) = 0;

    virtual void FireTestPacket(uint32_t channel) = 0;
    // The channel may be one that is not there. `from` has asked.
    virtual void Resend(const ZelCti::Gvcp::PacketResend& request,
                        const ZelCti::Endpoint& from) = 0;

    // ---- Message channel ----

    virtual void SetMessagePort(uint16_t port) = 0;  // 0 closes the channel
    virtual void SetMessageDestination(uint32_t address) = 0;
    virtual void SetMessageTimeout(uint32_t milliseconds) = 0;
    virtual void SetMessageRetries(uint32_t count) = 0;

    // Sends an event that belongs to no stream, if the channel is open.
    virtual void SendEvent(uint16_t id) = 0;

    // ---- The camera ----

    // Lets the clock of the camera begin with 0 again.
    virtual void SetTimestampToZero() = 0;

    // An action signal of the camera came.
    virtual void Act(uint32_t signal) = 0;
};

}  // namespace ZelSim
