#include "producers/simulator/gige/control/controlserver.h"

#include <algorithm>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpevents.h"

namespace ZelSim {

namespace Configuration = ZelCti::Gev::GvcpConfiguration;
namespace Capability = ZelCti::Gev::GvcpCapability;
namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteView;
using ZelCti::Endpoint;
using ZelCti::Gev::Status;

namespace {

using Milliseconds = std::chrono::milliseconds;

bool IsForEveryone(Gvcp::Code code) {
    return code == Gvcp::Code::DiscoveryCmd || code == Gvcp::Code::ForceIpCmd ||
           code == Gvcp::Code::ActionCmd;
}

bool WantsAnswer(const Gvcp::Command& command) {
    return command.Has(Gvcp::Flag::kAckRequired) || RegisterCommands::IsRead(command.code);
}

Answer BareAnswer(Status status, const Gvcp::Command& command) {
    Answer answer;
    answer.size = Gvcp::EncodeAck(answer.Space(), status, command.code, command.requestId);
    return answer;
}

void KeepEarlier(std::optional<ControlServer::Clock::time_point>& earliest,
                 std::optional<ControlServer::Clock::time_point> other) {
    if (other && (!earliest || *other < *earliest)) earliest = other;
}

}  // namespace

ControlServer::ControlServer(Camera& camera, ZelCti::PortRegisters& port,
                             BootstrapRegisters& bootstrap, ControlPrivilege& privilege,
                             NetworkHardware& hardware, Send send)
    : bootstrap_(bootstrap),
      privilege_(privilege),
      hardware_(hardware),
      answers_(std::move(send)),
      device_(port, bootstrap, hardware),
      registers_(RegisterAccess(port, bootstrap, hardware), bootstrap, hardware, privilege,
                 [this](const auto& change, const auto& before) { OnControl(change, before); }),
      actions_(camera, bootstrap, hardware) {}

void ControlServer::Handle(ByteView datagram, const Endpoint& from, bool broadcast,
                           Clock::time_point now) {
    OnTimer(now);  // what should have happened before
    if (datagram.size > Gvcp::kMaxMessageSize) return;
    const auto decoded = Gvcp::DecodeCommand(datagram);
    if (!decoded) return;
    const Command& command = *decoded;
    if (broadcast && !IsForEveryone(command.code)) return;
    if (command.code == Gvcp::Code::DiscoveryCmd) return Discover(command, from, broadcast, now);
    if (hardware_.Settings()->heartbeatSilence) return;
    if (command.code == Gvcp::Code::ForceIpCmd) return ForceIp(command, from, now);
    if (command.code == Gvcp::Code::PacketResendCmd) return Resend(command, from, now);
    privilege_.OnCommand(from, now);
    if (AnswerAgain(command, datagram, from, now)) return;
    uint32_t duration = 0;
    const Answer answer = Run(command, from, now, duration);
    const Clock::time_point due = Reply(command, from, answer, duration, now);
    store_.Keep(from, datagram, answer, due);
    mayFireTestPackets_ = mayFireTestPackets_ || RegisterCommands::IsWrite(command.code);
    FireTestPackets(now);
}

void ControlServer::Discover(const Command& command, const Endpoint& from, bool broadcast,
                             Clock::time_point now) {
    const auto reply = device_.Discover(command, from, broadcast);
    if (reply) answers_.Post(reply->to, reply->answer, now + reply->delay, now);
}

void ControlServer::ForceIp(const Command& command, const Endpoint& from, Clock::time_point now) {
    if (privilege_.Holder()) return;
    const auto reply = device_.ForceIp(command, from);
    if (reply) answers_.Post(reply->to, reply->answer, now, now);
}

// The answer is packets of the stream; their numbers are not kept.
void ControlServer::Resend(const Command& command, const Endpoint& from, Clock::time_point now) {
    const auto request = Gvcp::DecodePacketResend(command);
    const bool can = bootstrap_.Can().Has(Capability::kPacketResend);
    if (can && request) return hardware_.Resend(*request, from);
    if (!command.Has(Gvcp::Flag::kAckRequired)) return;
    const Answer answer =
        BareAnswer(can ? Status::InvalidParameter : Status::NotImplemented, command);
    answers_.PostAck(from, answer, now, now, *hardware_.Settings());
}

// Whether a command came before, so that it is not done again. A read that was answered may be:
// what it reads may have changed, and to read twice does no harm.
bool ControlServer::AnswerAgain(const Command& command, ByteView datagram, const Endpoint& from,
                                Clock::time_point now) {
    const AnswerStore::Entry* const entry = store_.Find(from, datagram);
    if (entry == nullptr) return false;
    if (entry->due > now) {
        SendPending(command, from, entry->due, now);
        return true;
    }
    if (RegisterCommands::IsRead(command.code)) return false;
    if (entry->answer.size != 0)
        answers_.PostAck(from, entry->answer, now, now, *hardware_.Settings());
    return true;
}

// An answer of size 0 is none.
Answer ControlServer::Run(const Command& command, const Endpoint& from, Clock::time_point now,
                          uint32_t& duration) {
    Answer answer;
    if (command.code == Gvcp::Code::ActionCmd) {
        answer = RunAction(command, now);
    } else if (!RegisterCommands::Knows(command.code)) {
        answer = BareAnswer(Status::NotImplemented, command);
    } else if (complainsOfAlignment_ && privilege_.MayWrite(from)) {
        complainsOfAlignment_ = false;
        answer = BareAnswer(Status::BadAlignment, command);
    } else {
        duration = registers_.Run(command, from, now, answer);
    }
    if (!WantsAnswer(command)) answer.size = 0;
    return answer;
}

Answer ControlServer::RunAction(const Command& command, Clock::time_point now) {
    const auto status = actions_.Run(command, privilege_.Holder().has_value(), now);
    return status ? BareAnswer(*status, command) : Answer();
}

// What takes time by nature is announced by a PENDING_ACK or else answered at once; a switch makes
// every access take time, announced or not. The application waits: that counts as its heartbeat.
ControlServer::Clock::time_point ControlServer::Reply(const Command& command, const Endpoint& from,
                                                      const Answer& answer, uint32_t duration,
                                                      Clock::time_point now) {
    if (answer.size == 0) return now;
    const auto settings = hardware_.Settings();
    if (!Is(Configuration::kPendingAck)) duration = 0;
    if (RegisterCommands::Knows(command.code))
        duration = std::max(duration, settings->pendingAckMs);
    const Clock::time_point due = now + Milliseconds(duration);
    if (duration != 0) {
        privilege_.OnCommand(from, due);
        SendPending(command, from, due, now);
    }
    lastAnswer_ = answers_.PostAck(from, answer, due, now, *settings);
    return due;
}

void ControlServer::SendPending(const Command& command, const Endpoint& from, Clock::time_point due,
                                Clock::time_point now) {
    if (!Is(Configuration::kPendingAck) || !WantsAnswer(command)) return;
    const auto left = std::chrono::duration_cast<Milliseconds>(due - now).count();
    const auto milliseconds = static_cast<uint16_t>(std::clamp<int64_t>(left, 1, UINT16_MAX));
    Answer pending;
    pending.size = Gvcp::EncodePendingAck(pending.Space(), command.requestId, milliseconds);
    answers_.Post(from, pending, now, now);
    if (!hardware_.Settings()->lateAckAfterSlow) return;
    Command older = command;
    older.requestId =
        command.requestId == 1 ? UINT16_MAX : static_cast<uint16_t>(command.requestId - 1);
    answers_.Post(from, BareAnswer(Status::Success, older), now, now);
}

void ControlServer::OnControl(const ControlPrivilege::Change& change,
                              const std::optional<Endpoint>& before) {
    if (change.isReleased) return EndControl(*before);
    if (change.isNew) complainsOfAlignment_ = hardware_.Settings()->badAlignmentOnce;
    if (!change.isTakenOver) return;
    hardware_.SendEvent(Gvcp::EventId::kPrimaryApplicationSwitch);
    store_.Forget(*before);
}

void ControlServer::EndControl(const Endpoint& before) {
    store_.Forget(before);
    actions_.Clear();
    bootstrap_.OnControlEnd();
}

std::optional<ControlServer::Clock::time_point> ControlServer::HeartbeatDeadline() const {
    const auto last = privilege_.LastHeartbeat();
    if (!last || Is(Configuration::kHeartbeatDisable)) return std::nullopt;
    return *last + Milliseconds(bootstrap_.Settings().heartbeatTimeout);
}

std::optional<ControlServer::Clock::time_point> ControlServer::NextDeadline(
    Clock::time_point now) const {
    std::optional<Clock::time_point> next = answers_.NextDeadline();
    KeepEarlier(next, HeartbeatDeadline());
    KeepEarlier(next, actions_.NextDeadline(now));
    if (mayFireTestPackets_) KeepEarlier(next, lastAnswer_);
    return next;
}

void ControlServer::OnTimer(Clock::time_point now) {
    answers_.SendDue(now);
    actions_.ActDue(now);
    FireTestPackets(now);
    const auto heartbeat = HeartbeatDeadline();
    const auto holder = privilege_.Holder();
    if (!heartbeat || *heartbeat > now || !holder) return;
    privilege_.Release();
    EndControl(*holder);
}

// After the answer to the command that asked for them.
void ControlServer::FireTestPackets(Clock::time_point now) {
    if (!mayFireTestPackets_ || lastAnswer_ > now) return;
    mayFireTestPackets_ = false;
    for (const uint32_t channel : bootstrap_.TakeTestPackets())
        hardware_.FireTestPacket(channel);
}

}  // namespace ZelSim
