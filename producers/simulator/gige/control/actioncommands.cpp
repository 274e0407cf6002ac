#include "producers/simulator/gige/control/actioncommands.h"

#include <algorithm>

#include "producers/wire/gvcpevents.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;

using ZelCti::Gev::Status;

namespace {

// A deadline that is further away is looked at again before.
constexpr uint64_t kLongestWait = 3600;   // s
constexpr uint64_t kSecond = 1000000000;  // ns

}  // namespace

std::optional<Status> ActionCommands::Run(const Gvcp::Command& command, bool isControlled,
                                          Clock::time_point now) {
    const Capabilities can = bootstrap_.Can();
    if (!can.Has(Gev::GvcpCapability::kAction)) return Status::NotImplemented;
    const auto action = Gvcp::DecodeAction(command);
    if (!action) return Status::InvalidParameter;
    const bool unconditional = (bootstrap_.Settings().gvcpConfiguration &
                                Gev::GvcpConfiguration::kUnconditionalAction) != 0;
    if (!isControlled && !unconditional) return std::nullopt;
    const uint32_t signals = SignalsOf(*action);
    if (signals == 0) return std::nullopt;
    if (!action->time) {
        Act(signals);
        return Status::Success;
    }
    if (!can.Has(Gev::GvcpCapability::kScheduledAction)) return Status::NotImplemented;
    return StatusOf20(Schedule(*action->time, signals, now));
}

uint32_t ActionCommands::SignalsOf(const Gvcp::Action& action) const {
    const ControlSettings settings = bootstrap_.Settings();
    if (action.deviceKey != settings.actionDeviceKey) return 0;
    uint32_t signals = 0;
    for (size_t i = 0; i < settings.actions.size(); ++i) {
        const ControlSettings::ActionSignal& signal = settings.actions.at(i);
        if (action.groupKey == signal.groupKey && (action.groupMask & signal.groupMask) != 0)
            signals |= 1U << i;
    }
    return signals;
}

Status ActionCommands::Schedule(uint64_t time, uint32_t signals, Clock::time_point now) {
    if (hardware_.Settings()->tickFrequencyZero) return Status::NoRefTime;
    if (time <= TicksAt(now)) {
        hardware_.SendEvent(Gvcp::EventId::kActionLate);
        return Status::ActionLate;
    }
    return queue_.Add(time, signals) ? Status::Success : Status::Overflow;
}

// The status codes of 2.0 are sent only to those who want them.
Status ActionCommands::StatusOf20(Status status) const {
    const bool on =
        (bootstrap_.Settings().gvcpConfiguration & Gev::GvcpConfiguration::kStatusCodes20) != 0;
    return status == Status::Success || on ? status : Status::Error;
}

void ActionCommands::Act(uint32_t signals) {
    for (uint32_t i = 0; signals >> i != 0; ++i)
        if ((signals >> i & 1U) != 0) hardware_.Act(i);
}

std::optional<ActionCommands::Clock::time_point> ActionCommands::NextDeadline(
    Clock::time_point now) const {
    const std::optional<uint64_t> next = queue_.Next();
    if (!next) return std::nullopt;
    const uint64_t ticks = TicksAt(now);
    if (*next <= ticks) return now;
    const uint64_t frequency = camera_.Config().timestampFrequency;
    const uint64_t left = std::min(*next - ticks, kLongestWait * frequency);
    // Rounded up: the tick has come by then.
    const uint64_t nanoseconds =
        left / frequency * kSecond + (left % frequency * kSecond + frequency - 1) / frequency + 1;
    return now + std::chrono::nanoseconds(nanoseconds);
}

void ActionCommands::ActDue(Clock::time_point now) {
    const uint64_t ticks = TicksAt(now);
    while (const std::optional<uint32_t> signals = queue_.TakeDue(ticks))
        Act(*signals);
}

}  // namespace ZelSim
