// The message channel of a camera on a network.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "producers/sockets/endpoint.h"
#include "producers/transport.h"
#include "producers/wire/byteview.h"
#include "producers/wire/eventmessage.h"

namespace ZelSim {

// Sends the events of a camera to the application that has opened the channel, one at a time and
// with request ids of its own. With a time-out, each event asks for an acknowledge and is sent
// again until it comes or no retry is left.
//
//   closed --SetPort--> idle --event, OnTimer--> sent --OnAck, or no retry left--> idle
//   any state --SetPort(0), camera lost--> closed, without the events that were not sent
//
// Events come from any thread and wait for the thread that calls OnTimer, which is woken for them;
// 64 can wait, further ones are lost. The channel has no socket. Thread-safe; it calls `send` and
// `wake` with its mutex held.
class MessageChannel final : public ZelCti::CameraSink {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Send = std::function<void(const ZelCti::Endpoint& to, ZelCti::ByteView message)>;

    // `wake` makes another thread look at NextDeadline; neither function may wait.
    MessageChannel(uint16_t sourcePort, Send send, std::function<void()> wake);

    uint16_t SourcePort() const { return sourcePort_; }

    // The registers of the channel: MCP (0 closes the channel), MCDA, MCTT in ms (0: no event asks
    // for an acknowledge) and MCRC.
    void SetPort(uint16_t port);
    void SetAddress(uint32_t address);
    void SetTimeout(uint32_t ms);
    void SetRetries(uint32_t count);

    // The form with block ids of 64 bits.
    void SetExtendedIds(bool on);

    // When OnTimer has something to do; the end of time when it has not.
    Time NextDeadline() const;
    void OnTimer(Time now);

    // A datagram came to the source port. What is no acknowledge of the event that was sent is
    // ignored.
    void OnAck(ZelCti::ByteView datagram, Time now);

    // Events that were not sent, or not acknowledged.
    uint64_t NumLost() const;

    void OnEvent(GenTL::EVENT_TYPE type, uint64_t id, ZelCti::EventData data) override;
    void OnLost(const std::string& /*reason*/) override { SetPort(0); }

  private:
    struct Sent {
        ZelCti::EventMessage message;
        uint16_t requestId;
        Time deadline;
        uint32_t retriesLeft;
    };

    void SendNext(Time now);
    void SendMessage(const ZelCti::EventMessage& message);

    const uint16_t sourcePort_;
    const Send send_;
    const std::function<void()> wake_;
    mutable std::mutex mutex_;  // guards what follows
    ZelCti::Endpoint destination_;
    std::chrono::milliseconds timeout_{0};
    uint32_t retries_ = 0;
    bool extendedIds_ = false;
    std::array<ZelCti::CameraEvent, 64> waiting_;  // a ring: sending frames allocates no memory
    size_t first_ = 0;
    size_t numWaiting_ = 0;
    std::optional<Sent> sent_;  // without its acknowledge
    uint16_t lastRequest_ = 0;
    uint64_t numLost_ = 0;
};

}  // namespace ZelSim
