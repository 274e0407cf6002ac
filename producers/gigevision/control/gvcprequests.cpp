#include "producers/gigevision/control/gvcprequests.h"

#include <algorithm>

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::Gev::Status;

namespace {

// More in a row could be more than a small camera can take in.
constexpr size_t kMaxPipelined = 4;

// The longest commands erase flash memory. A camera cannot keep a caller for longer.
constexpr std::chrono::minutes kLongestCommand{5};

constexpr Milliseconds kFirstPause{20};  // after BUSY; twice as long each time
constexpr unsigned kMaxBusy = 5;
constexpr unsigned kMaxMisaligned = 1;

constexpr size_t kIdOffset = 6;

bool IsOnItsWay(const Exchange& exchange) {
    return exchange.id != 0;
}

}  // namespace

void GvcpRequests::Add(Exchange& exchange) {
    exchanges_.push_back(&exchange);
}

void GvcpRequests::CancelAll() {
    for (Exchange* const exchange : exchanges_)
        exchange->state = Exchange::State::Cancelled;
    exchanges_.clear();
}

// Nothing overtakes but heartbeats. What is to be sent again keeps its place.
bool GvcpRequests::MayGo(const Exchange& exchange) const {
    if (IsOnItsWay(exchange) || exchange.lane == Exchange::Lane::Heartbeat) return true;
    size_t numBefore = 0;
    for (const Exchange* const other : exchanges_) {
        if (other == &exchange) break;
        if (other->lane == Exchange::Lane::Heartbeat) continue;
        if (other->lane == Exchange::Lane::Ordinary || !IsOnItsWay(*other)) return false;
        ++numBefore;
    }
    return numBefore == 0 ||
           (exchange.lane == Exchange::Lane::Pipelined && numBefore < kMaxPipelined);
}

std::optional<ByteView> GvcpRequests::NextDatagram(Time now) {
    for (Exchange* const exchange : exchanges_) {
        if (exchange->state != Exchange::State::Waiting || exchange->due > now) continue;
        if (!MayGo(*exchange)) continue;
        if (exchange->tries == 0) {
            exchange->firstSent = now;
            ++statistics_.commands;
        }
        if (!IsOnItsWay(*exchange)) exchange->id = NewId();
        ++exchange->tries;
        exchange->state = Exchange::State::Sent;
        exchange->due = std::min(now + Timeout(*exchange), LatestEnd(*exchange));
        ByteSpan{exchange->command.data(), exchange->commandSize}.PutU16(kIdOffset, exchange->id);
        return ByteView{exchange->command.data(), exchange->commandSize};
    }
    return std::nullopt;
}

// A success without what was asked for is none: the camera may still answer. It may be an answer to
// another command, too, which comes late and with a wrong id.
bool GvcpRequests::IsAnswer(const Gvcp::Acknowledge& ack, const Exchange& exchange) {
    if (ack.code != Gvcp::AckOf(exchange.code)) return false;
    if (ack.status != Status::Success) return true;
    if (exchange.code == Gvcp::Code::ReadRegCmd) return ack.payload.size == exchange.answerSize;
    if (ack.payload.size < exchange.answerSize) return false;
    return exchange.code != Gvcp::Code::ReadMemCmd || ack.payload.U32(0) == exchange.Address();
}

void GvcpRequests::OnDatagram(ByteView datagram, Time now) {
    const auto ack = Gvcp::DecodeAcknowledge(datagram);
    Exchange* const exchange = ack ? Find(ack->ackId) : nullptr;
    const bool isPending = ack && ack->code == Gvcp::Code::PendingAck;
    if (exchange == nullptr ||
        (isPending ? !OnPending(*exchange, *ack, now) : !IsAnswer(*ack, *exchange))) {
        ++statistics_.strayAcks;
        return;
    }
    lastHeard_ = now;
    if (isPending || TriesAnew(*exchange, ack->status, now)) return;
    exchange->status = ack->status;
    exchange->payloadSize = std::min(ack->payload.size, exchange->payload.size());
    std::copy_n(ack->payload.data, exchange->payloadSize, exchange->payload.data());
    Finish(*exchange, Exchange::State::Acknowledged);
}

bool GvcpRequests::OnPending(Exchange& exchange, const Gvcp::Acknowledge& ack, Time now) {
    const auto duration = Gvcp::DecodePendingAck(ack);
    if (!duration) return false;
    ++statistics_.pendings;
    exchange.state = Exchange::State::Sent;
    exchange.isPending = true;
    exchange.due = std::min(now + Milliseconds(*duration) + Timeout(exchange), LatestEnd(exchange));
    return true;
}

bool GvcpRequests::TriesAnew(Exchange& exchange, Status status, Time now) {
    const unsigned limit = status == Status::Busy           ? kMaxBusy
                           : status == Status::BadAlignment ? kMaxMisaligned
                                                            : 0;
    const Time next = now + kFirstPause * (1U << exchange.refusals);
    if (exchange.refusals >= limit || next >= LatestEnd(exchange)) return false;
    ++statistics_.refusals;
    ++exchange.refusals;
    exchange.id = NewId();
    exchange.isPending = false;
    exchange.state = Exchange::State::Waiting;
    exchange.due = next;
    return true;
}

void GvcpRequests::OnTimer(Time now) {
    for (size_t i = 0; i < exchanges_.size();) {
        Exchange& exchange = *exchanges_[i];
        if (exchange.state != Exchange::State::Sent || exchange.due > now) {
            ++i;
        } else if (exchange.tries - exchange.refusals < MaxTries(exchange) &&
                   now < LatestEnd(exchange)) {
            ++statistics_.repetitions;
            exchange.isPending = false;
            exchange.state = Exchange::State::Waiting;
            ++i;
        } else {
            ++statistics_.unanswered;
            Finish(exchange, Exchange::State::Unanswered);
        }
    }
}

std::optional<Time> GvcpRequests::NextDeadline() const {
    std::optional<Time> next;
    for (const Exchange* const exchange : exchanges_) {
        if (exchange->state == Exchange::State::Waiting && !MayGo(*exchange)) continue;
        if (!next || exchange->due < *next) next = exchange->due;
    }
    return next;
}

bool GvcpRequests::IsPending() const {
    return std::any_of(exchanges_.begin(), exchanges_.end(),
                       [](const Exchange* exchange) { return exchange->isPending; });
}

uint16_t GvcpRequests::NewId() {
    do {
        nextId_ = Gvcp::NextRequestId(nextId_);
    } while (Find(nextId_) != nullptr);
    return nextId_;
}

Exchange* GvcpRequests::Find(uint16_t id) const {
    const auto found = std::find_if(exchanges_.begin(), exchanges_.end(),
                                    [id](const Exchange* exchange) { return exchange->id == id; });
    return found != exchanges_.end() ? *found : nullptr;
}

unsigned GvcpRequests::MaxTries(const Exchange& exchange) const {
    return exchange.maxTries != 0 ? exchange.maxTries : limits_.maxTries;
}

Milliseconds GvcpRequests::Timeout(const Exchange& exchange) const {
    return exchange.timeout.count() != 0 ? exchange.timeout : limits_.timeout;
}

Time GvcpRequests::LatestEnd(const Exchange& exchange) const {
    const Time end = exchange.firstSent + kLongestCommand;
    return deadline_ ? std::min(end, *deadline_) : end;
}

void GvcpRequests::Finish(Exchange& exchange, Exchange::State state) {
    exchange.state = state;
    exchange.isPending = false;
    exchanges_.erase(std::find(exchanges_.begin(), exchanges_.end(), &exchange));
}

}  // namespace ZelGev
