#include "producers/gigevision/control/heartbeat.h"

#include <algorithm>
#include <array>
#include <utility>

#include "producers/wire/bootstrap.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;
using ZelCti::Gev::Status;

namespace {

constexpr Milliseconds kLongestPeriod{1000};
constexpr Milliseconds kShortestTry{20};
constexpr unsigned kTries = 10;  // in the time that is left of the time-out

Milliseconds PeriodOf(Milliseconds timeout) {
    return std::min(timeout / 3, kLongestPeriod);
}

}  // namespace

Heartbeat::Heartbeat(const HeartbeatSettings& settings, Time now)
    : settings_(settings), timeoutOfCamera_(settings.timeout), next_(now) {}

std::optional<Time> Heartbeat::NextDeadline() const {
    if (isUnderWay_) return std::nullopt;
    return next_;
}

Exchange* Heartbeat::Begin(Time now) {
    if (isUnderWay_ || now < next_) return nullptr;
    const std::array<uint32_t, 3> addresses{Gev::kCcp.address, Gev::kPrimaryApplicationPort.address,
                                            Gev::kPrimaryApplicationIp.address};
    exchange_ = writesNext_
                    ? Exchange::WriteReg(Gev::kHeartbeatTimeout.address,
                                         static_cast<uint32_t>(timeoutOfCamera_.count()))
                    : Exchange::ReadReg(addresses.data(), settings_.holder ? addresses.size() : 1);
    exchange_.lane = Exchange::Lane::Heartbeat;
    exchange_.maxTries = kTries;
    exchange_.timeout =
        std::max((settings_.timeout - PeriodOf(settings_.timeout)) / kTries, kShortestTry);
    writesNext_ = false;
    isUnderWay_ = true;
    begun_ = now;
    return &exchange_;
}

std::string Heartbeat::End(const GvcpRequests& requests, Time now) {
    isUnderWay_ = false;
    next_ = writesNext_ ? now : begun_ + PeriodOf(settings_.timeout);
    if (exchange_.IsAcknowledged()) {
        std::string reason = settings_.controls ? Judge() : std::string();
        if (reason.empty() && !exchange_.Succeeded()) settings_.holder.reset();
        return Confirmed(std::move(reason), now);
    }
    // A camera that answers other commands is there; one that said that it is busy may be silent.
    if (requests.LastHeard() >= begun_ || requests.IsPending()) return {};
    return "has not answered for " + std::to_string(settings_.timeout.count()) + " ms";
}

std::string Heartbeat::Confirmed(std::string reason, Time now) {
    if (reason.empty() || isSuspected_) {
        isSuspected_ = false;
        return reason;
    }
    isSuspected_ = true;
    writesNext_ = exchange_.code == Gvcp::Code::WriteRegCmd;
    next_ = now;
    return {};
}

std::string Heartbeat::Judge() const {
    if (exchange_.status == Status::AccessDenied) return "denies the access";
    if (!exchange_.Succeeded() || exchange_.code != Gvcp::Code::ReadRegCmd) return {};
    const auto values = Gvcp::DecodeReadRegAck(exchange_.Ack());
    if (!values) return {};
    if (((*values)[0] & (Gev::Ccp::kControl | Gev::Ccp::kExclusive)) == 0)
        return "has taken the control back";
    if (!settings_.holder || values->size() < 3) return {};
    const ZelCti::Endpoint holder{(*values)[2], static_cast<uint16_t>((*values)[1])};
    return holder == *settings_.holder ? std::string() : "is controlled by another application";
}

void Heartbeat::Doubt(Time now) {
    if (!settings_.controls) return;
    writesNext_ = writesNext_ || !settings_.holder;
    next_ = now;
}

void Heartbeat::FollowTimeout(Milliseconds timeout, Time now) {
    settings_.timeout = timeout;
    timeoutOfCamera_ = timeout;
    next_ = now;
}

void Heartbeat::SetTimeoutOfCamera(Milliseconds timeout, Time now) {
    if (!settings_.controls || timeout == timeoutOfCamera_) return;
    timeoutOfCamera_ = timeout;
    writesNext_ = true;
    next_ = now;
}

}  // namespace ZelGev
