// A datagram at a port of GVCP: every decoder reads it, whatever its code says. What they return
// lies in the datagram, and can be encoded again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpcommands.h"
#include "producers/wire/gvcpevents.h"

namespace {

using namespace ZelCti;
using namespace ZelCti::Gvcp;

void Require(bool condition) {
    if (!condition) std::abort();
}

// Reads all of it, so that a sanitizer sees bytes that are not the message's.
void Touch(ByteView message, ByteView part) {
    if (part.size == 0) return;
    Require(part.data >= message.data && part.data + part.size <= message.data + message.size);
    volatile uint8_t sum = 0;
    for (size_t i = 0; i < part.size; ++i)
        sum = static_cast<uint8_t>(sum + part.data[i]);
}

void Touch(ByteView message, std::string_view text) {
    Touch(message, ByteView{reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

// `encode(out)` makes a message with the same payload as the one that was read.
template <typename Encode>
void RequireSize(const Encode& encode, ByteView payload) {
    uint8_t bytes[kMaxMessageSize];
    Require(encode(ByteSpan{bytes, sizeof bytes}) == kHeaderSize + payload.size);
}

void ReadEvents(const Command& command) {
    const auto events = DecodeEvents(command);
    if (!events) return;
    size_t count = 0;
    for (const Event& event : *events) {
        Touch(command.payload, event.data);
        ++count;
    }
    Require(count > 0 && count <= command.payload.size / 16);
}

void ReadCommand(const Command& command) {
    const Request request{command.requestId, 0};
    if (const auto forceIp = DecodeForceIp(command))
        RequireSize([&](ByteSpan out) { return EncodeForceIpCmd(out, request, *forceIp); },
                    command.payload);
    if (const auto resend = DecodePacketResend(command))
        RequireSize([&](ByteSpan out) { return EncodePacketResendCmd(out, request, *resend); },
                    command.payload);
    if (const auto action = DecodeAction(command))
        RequireSize([&](ByteSpan out) { return EncodeActionCmd(out, request, *action); },
                    command.payload);
    if (const auto readMem = DecodeReadMem(command))
        RequireSize([&](ByteSpan out) { return EncodeReadMemCmd(out, request, *readMem); },
                    command.payload);
    if (const auto memory = DecodeWriteMem(command)) {
        Touch(command.payload, memory->data);
        RequireSize([&](ByteSpan out) { return EncodeWriteMemCmd(out, request, *memory); },
                    command.payload);
    }
    if (const auto addresses = DecodeReadReg(command)) {
        for (const uint32_t address : *addresses) {
            const auto place = Gev::FindRegister(address);
            if (place) Require(place->reg->At(place->index) + place->offset == address);
        }
    }
    if (const auto writes = DecodeWriteReg(command)) {
        size_t count = 0;
        for (const RegisterWrite& write : *writes) {
            Require(write.address == (*writes)[count].address);
            ++count;
        }
        Require(count == writes->size());
    }
    ReadEvents(command);
}

void ReadAcknowledge(const Acknowledge& ack) {
    if (const auto discovery = DecodeDiscoveryAck(ack)) {
        for (const std::string_view text :
             {discovery->manufacturerName, discovery->modelName, discovery->deviceVersion,
              discovery->manufacturerInformation, discovery->serialNumber,
              discovery->userDefinedName})
            Touch(ack.payload, text);
        uint8_t bytes[kMaxMessageSize];
        EncodeDiscoveryAck({bytes, sizeof bytes}, ack.ackId, *discovery);
    }
    if (const auto values = DecodeReadRegAck(ack)) {
        size_t count = 0;
        for (const uint32_t value : *values)
            Require(value == (*values)[count++]);
        Require(count == ack.payload.size / 4);
    }
    if (const auto memory = DecodeReadMemAck(ack)) Touch(ack.payload, memory->data);
    DecodeWriteRegAck(ack);
    DecodeWriteMemAck(ack);
    DecodePendingAck(ack);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ByteView datagram{data, size};
    const auto command = DecodeCommand(datagram);
    const auto ack = DecodeAcknowledge(datagram);
    Require(!command || !ack);
    if (command) ReadCommand(*command);
    if (ack) ReadAcknowledge(*ack);
    return 0;
}
