// Datagrams at the message port of an application. Each event that is delivered can be read again,
// as it was in its message; an acknowledge is for the command that wants one, and a repetition
// delivers nothing.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/message.h"
#include "producers/gigevision/control/eventinbox.h"
#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpevents.h"

namespace {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelGev::EventInbox;

void Require(bool condition) {
    if (!condition) std::abort();
}

void ExpectOneEvent(uint16_t id, ByteView message) {
    const auto command = Gvcp::DecodeCommand(message);
    Require(bool(command));
    const auto events = Gvcp::DecodeEvents(*command);
    Require(bool(events));
    size_t count = 0;
    for (const Gvcp::Event& event : *events) {
        Require(event.id == id);
        ++count;
    }
    Require(count == 1);
}

}  // namespace

// The length of a datagram in a byte, and the datagram, as often as there are such.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    size_t numDelivered = 0;
    EventInbox inbox([&](uint16_t id, ByteView message) {
        ExpectOneEvent(id, message);
        ++numDelivered;
    });
    Fuzz::Message input{data, size};
    while (input.size != 0) {
        const Fuzz::Message datagram = input.Take(static_cast<size_t>(input.Number(1)));
        const ByteView bytes{datagram.data, datagram.size};
        std::array<uint8_t, Gvcp::kHeaderSize> answer;
        const ByteSpan out{answer.data(), answer.size()};
        const size_t answered = inbox.OnDatagram(bytes, out);
        const auto command = Gvcp::DecodeCommand(bytes);
        Require(answered == 0 || (command && command->Has(Gvcp::Flag::kAckRequired)));
        if (answered != 0) {
            const auto ack = Gvcp::DecodeAcknowledge({answer.data(), answered});
            Require(ack && ack->ackId == command->requestId &&
                    ack->code == Gvcp::AckOf(command->code));
        }
        const size_t before = numDelivered;
        Require(inbox.OnDatagram(bytes, out) == answered);
        Require(numDelivered == before);
    }
    return 0;
}
