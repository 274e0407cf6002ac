#include "producers/simulator/gige/control/controlprivilege.h"

#include "producers/wire/bootstrapbits.h"

namespace ZelSim {

using ZelCti::Endpoint;

namespace Ccp = ZelCti::Gev::Ccp;
using ZelCti::Gev::Status;

namespace {

constexpr uint32_t kPrivileges = Ccp::kControl | Ccp::kExclusive;
constexpr uint32_t kKnownBits = Ccp::kSwitchoverKey | Ccp::kSwitchoverAllowed | kPrivileges;

// What CCP shows of a privilege that was asked for: exclusive is more than control.
uint32_t GrantedBits(uint32_t ccp, bool hasSwitchover) {
    const uint32_t privilege = (ccp & Ccp::kExclusive) != 0 ? Ccp::kExclusive : Ccp::kControl;
    return privilege | (hasSwitchover ? ccp & Ccp::kSwitchoverAllowed : 0);
}

}  // namespace

ControlPrivilege::Change ControlPrivilege::Write(const Endpoint& from, uint32_t ccp,
                                                 std::optional<uint16_t> key,
                                                 Clock::time_point now) {
    if ((ccp & ~kKnownBits) != 0) return {Status::InvalidParameter};
    const std::lock_guard lock(mutex_);
    Change change;
    if (held_ && !IsHolder(from)) {
        const bool mayTakeOver = key && (held_->bits & Ccp::kSwitchoverAllowed) != 0 &&
                                 ccp >> Ccp::kSwitchoverKeyShift == *key;
        if ((ccp & kPrivileges) == 0 || !mayTakeOver) return {Status::AccessDenied};
        change.isTakenOver = true;
    }
    if ((ccp & kPrivileges) == 0) {
        // To allow a switchover of nothing means nothing.
        if ((ccp & Ccp::kSwitchoverAllowed) != 0) return {Status::InvalidParameter};
        change.isReleased = held_.has_value();
        held_.reset();
        return change;
    }
    change.isNew = !IsHolder(from);
    held_ = Held{from, GrantedBits(ccp, key.has_value()), now};
    return change;
}

void ControlPrivilege::Release() {
    const std::lock_guard lock(mutex_);
    held_.reset();
}

uint32_t ControlPrivilege::Value() const {
    const std::lock_guard lock(mutex_);
    return held_ ? held_->bits : 0;
}

std::optional<Endpoint> ControlPrivilege::Holder() const {
    const std::lock_guard lock(mutex_);
    if (!held_) return std::nullopt;
    return held_->holder;
}

bool ControlPrivilege::MayRead(const Endpoint& from) const {
    const std::lock_guard lock(mutex_);
    return !held_ || (held_->bits & Ccp::kExclusive) == 0 || IsHolder(from);
}

bool ControlPrivilege::MayWrite(const Endpoint& from) const {
    const std::lock_guard lock(mutex_);
    return IsHolder(from);
}

void ControlPrivilege::OnCommand(const Endpoint& from, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    if (IsHolder(from)) held_->heartbeat = now;
}

std::optional<ControlPrivilege::Clock::time_point> ControlPrivilege::LastHeartbeat() const {
    const std::lock_guard lock(mutex_);
    if (!held_) return std::nullopt;
    return held_->heartbeat;
}

}  // namespace ZelSim
