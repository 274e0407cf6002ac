// The control port of a served camera.
#pragma once

#include <optional>

#include "producers/simulator/gige/control/actioncommands.h"
#include "producers/simulator/gige/control/answerqueue.h"
#include "producers/simulator/gige/control/devicecommands.h"
#include "producers/simulator/gige/control/registercommands.h"

namespace ZelSim {

// Answers GVCP commands as a strict device does. It knows neither sockets nor threads: datagrams
// and times come from outside, and answers go out through a function. Each datagram costs bounded
// work and no memory. Thread-bound, and the only one that changes the control privilege.
class ControlServer {
  public:
    using Clock = std::chrono::steady_clock;
    using Send = AnswerQueue::Send;

    // All of them must outlive the server. `port` has the registers of `bootstrap`.
    ControlServer(Camera& camera, ZelCti::PortRegisters& port, BootstrapRegisters& bootstrap,
                  ControlPrivilege& privilege, NetworkHardware& hardware, Send send);

    // A datagram came to the port. `broadcast` if it was not for this address alone.
    void Handle(ZelCti::ByteView datagram, const ZelCti::Endpoint& from, bool broadcast,
                Clock::time_point now);

    // When OnTimer has something to do; none before the next datagram.
    std::optional<Clock::time_point> NextDeadline(Clock::time_point now) const;
    void OnTimer(Clock::time_point now);

  private:
    using Command = ZelCti::Gvcp::Command;

    void Discover(const Command& command, const ZelCti::Endpoint& from, bool broadcast,
                  Clock::time_point now);
    void ForceIp(const Command& command, const ZelCti::Endpoint& from, Clock::time_point now);
    void Resend(const Command& command, const ZelCti::Endpoint& from, Clock::time_point now);
    bool AnswerAgain(const Command& command, ZelCti::ByteView datagram,
                     const ZelCti::Endpoint& from, Clock::time_point now);
    Answer Run(const Command& command, const ZelCti::Endpoint& from, Clock::time_point now,
               uint32_t& duration);
    Answer RunAction(const Command& command, Clock::time_point now);
    Clock::time_point Reply(const Command& command, const ZelCti::Endpoint& from,
                            const Answer& answer, uint32_t duration, Clock::time_point now);
    void SendPending(const Command& command, const ZelCti::Endpoint& from, Clock::time_point due,
                     Clock::time_point now);
    void OnControl(const ControlPrivilege::Change& change,
                   const std::optional<ZelCti::Endpoint>& before);
    void EndControl(const ZelCti::Endpoint& before);
    std::optional<Clock::time_point> HeartbeatDeadline() const;
    void FireTestPackets(Clock::time_point now);
    bool Is(uint32_t gvcpConfigurationBit) const {
        return (bootstrap_.Settings().gvcpConfiguration & gvcpConfigurationBit) != 0;
    }

    BootstrapRegisters& bootstrap_;
    ControlPrivilege& privilege_;
    NetworkHardware& hardware_;
    AnswerQueue answers_;
    AnswerStore store_;
    DeviceCommands device_;
    RegisterCommands registers_;
    ActionCommands actions_;
    bool complainsOfAlignment_ = false;  // at the next access
    Clock::time_point lastAnswer_;       // when it goes; test packets come after it
    bool mayFireTestPackets_ = false;    // since a register was written
};

}  // namespace ZelSim
