#include "producers/gigevision/control/eventinbox.h"

#include <algorithm>

#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpevents.h"

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::Gev::Status;

namespace {

// FNV-1a.
uint64_t HashOf(ByteView bytes) {
    uint64_t hash = 0xCBF29CE484222325U;
    for (size_t i = 0; i < bytes.size; ++i)
        hash = (hash ^ bytes.U8(i)) * 0x100000001B3U;
    return hash;
}

bool HasEvents(const Gvcp::Command& command) {
    return command.code == Gvcp::Code::EventCmd || command.code == Gvcp::Code::EventDataCmd;
}

}  // namespace

size_t EventInbox::OnDatagram(ByteView datagram, ByteSpan answer) {
    const auto command = Gvcp::DecodeCommand(datagram);
    if (!command || !HasEvents(*command)) return 0;
    const auto events = Gvcp::DecodeEvents(*command);
    if (!events) return 0;
    if (!IsRepetition(*command)) DeliverEvents(*command, *events);
    if (!command->Has(Gvcp::Flag::kAckRequired)) return 0;
    return Gvcp::EncodeAck(answer, Status::Success, command->code, command->requestId);
}

// Numbers alone are not enough: they come again, and a camera that wants no acknowledge may count
// nothing.
bool EventInbox::IsRepetition(const Gvcp::Command& command) {
    const Seen one{command.requestId, HashOf(command.payload)};
    const auto isSame = [&one](const Seen& other) {
        return other.requestId == one.requestId && other.hash == one.hash;
    };
    if (std::any_of(seen_.begin(), seen_.end(), isSame)) return true;
    seen_.at(nextSeen_) = one;
    nextSeen_ = (nextSeen_ + 1) % seen_.size();
    return false;
}

void EventInbox::DeliverEvents(const Gvcp::Command& command, const Gvcp::Events& events) {
    const bool extended = command.Has(Gvcp::Flag::kExtendedIds);
    const bool withData = command.code == Gvcp::Code::EventDataCmd;
    const Gvcp::Request request{command.requestId, command.flags};
    std::array<uint8_t, kMaxMessageSize> bytes;
    const ByteSpan out{bytes.data(), bytes.size()};
    for (const Gvcp::Event& event : events) {
        const auto encode = withData ? Gvcp::EncodeEventDataCmd : Gvcp::EncodeEventCmd;
        const size_t size = encode(out, request, extended, &event, 1);
        deliver_(event.id, {bytes.data(), size});
    }
}

}  // namespace ZelGev
