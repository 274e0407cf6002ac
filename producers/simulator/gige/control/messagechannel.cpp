#include "producers/simulator/gige/control/messagechannel.h"

#include <utility>

#include "producers/wire/gvcpevents.h"

namespace ZelSim {

using ZelCti::ByteView;
using ZelCti::CameraEvent;
using ZelCti::EventData;
using ZelCti::EventMessage;
namespace Gvcp = ZelCti::Gvcp;

namespace {

// The event in a message of the camera; none for another message.
std::optional<CameraEvent> EventIn(EventData data) {
    const auto command = Gvcp::DecodeCommand({static_cast<const uint8_t*>(data.bytes), data.size});
    if (!command) return std::nullopt;
    const auto events = Gvcp::DecodeEvents(*command);
    if (!events) return std::nullopt;
    const Gvcp::Event event = *events->begin();
    CameraEvent out{event.id, event.timestamp, std::nullopt};
    if (event.data.size == sizeof(uint64_t)) out.frameId = event.data.U64(0);
    return out;
}

}  // namespace

MessageChannel::MessageChannel(uint16_t sourcePort, Send send, std::function<void()> wake)
    : sourcePort_(sourcePort), send_(std::move(send)), wake_(std::move(wake)) {}

void MessageChannel::SetPort(uint16_t port) {
    const std::lock_guard lock(mutex_);
    destination_.port = port;
    if (port != 0) return;
    numWaiting_ = 0;
    sent_.reset();
}

void MessageChannel::SetAddress(uint32_t address) {
    const std::lock_guard lock(mutex_);
    destination_.address = address;
}

void MessageChannel::SetTimeout(uint32_t ms) {
    const std::lock_guard lock(mutex_);
    timeout_ = std::chrono::milliseconds(ms);
}

void MessageChannel::SetRetries(uint32_t count) {
    const std::lock_guard lock(mutex_);
    retries_ = count;
}

void MessageChannel::SetExtendedIds(bool on) {
    const std::lock_guard lock(mutex_);
    extendedIds_ = on;
}

uint64_t MessageChannel::NumLost() const {
    const std::lock_guard lock(mutex_);
    return numLost_;
}

void MessageChannel::OnEvent(GenTL::EVENT_TYPE type, uint64_t /*id*/, EventData data) {
    if (type != GenTL::EVENT_REMOTE_DEVICE) return;
    const auto event = EventIn(data);
    const std::lock_guard lock(mutex_);
    if (!event || destination_.port == 0) return;
    if (numWaiting_ == waiting_.size()) {
        ++numLost_;
        return;
    }
    waiting_[(first_ + numWaiting_++) % waiting_.size()] = *event;
    wake_();
}

MessageChannel::Time MessageChannel::NextDeadline() const {
    const std::lock_guard lock(mutex_);
    if (sent_) return sent_->deadline;
    return numWaiting_ == 0 ? Time::max() : Time::min();
}

void MessageChannel::OnTimer(Time now) {
    const std::lock_guard lock(mutex_);
    if (sent_ && now >= sent_->deadline) {
        if (sent_->retriesLeft == 0) {
            sent_.reset();
            ++numLost_;
        } else {
            --sent_->retriesLeft;
            sent_->deadline = now + timeout_;
            SendMessage(sent_->message);
        }
    }
    SendNext(now);
}

void MessageChannel::OnAck(ByteView datagram, Time now) {
    const auto ack = Gvcp::DecodeAcknowledge(datagram);
    if (!ack) return;
    if (ack->code != Gvcp::Code::EventAck && ack->code != Gvcp::Code::EventDataAck) return;
    const std::lock_guard lock(mutex_);
    if (!sent_ || ack->ackId != sent_->requestId) return;
    sent_.reset();
    SendNext(now);
}

// With the mutex held, as SendMessage. Without a time-out, all that wait are sent.
void MessageChannel::SendNext(Time now) {
    while (!sent_ && numWaiting_ != 0) {
        const CameraEvent event = waiting_[first_];
        first_ = (first_ + 1) % waiting_.size();
        --numWaiting_;
        const bool asksForAck = timeout_.count() != 0;
        lastRequest_ = Gvcp::NextRequestId(lastRequest_);
        const Gvcp::Request request{lastRequest_,
                                    asksForAck ? Gvcp::Flag::kAckRequired : uint8_t{0}};
        const EventMessage message = EncodeGevEvent(event, request, extendedIds_);
        SendMessage(message);
        if (asksForAck) sent_ = Sent{message, lastRequest_, now + timeout_, retries_};
    }
}

void MessageChannel::SendMessage(const EventMessage& message) {
    send_(destination_, {message.bytes.data(), message.size});
}

}  // namespace ZelSim
