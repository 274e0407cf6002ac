#include "producers/wire/gvcp.h"

namespace ZelCti::Gvcp {

namespace {

// Both kinds of headers have the length of the payload here.
constexpr size_t kLengthOffset = 4;

Result<ByteView> PayloadOf(ByteView datagram) {
    const ByteView rest = datagram.From(kHeaderSize);
    const size_t length = datagram.U16(kLengthOffset);
    if (length > rest.size) return Fault::TooShort;
    if (length < rest.size) return Fault::WrongLength;
    return rest;
}

}  // namespace

Result<Command> DecodeCommand(ByteView datagram) {
    if (datagram.size < kHeaderSize) return Fault::TooShort;
    if (!IsCommand(datagram)) return Fault::WrongKey;
    const Result<ByteView> payload = PayloadOf(datagram);
    if (!payload) return payload.GetFault();
    const uint16_t requestId = datagram.U16(6);
    if (requestId == 0) return Fault::ZeroRequestId;
    return Command{static_cast<Code>(datagram.U16(2)), datagram.U8(1), requestId, *payload};
}

Result<Acknowledge> DecodeAcknowledge(ByteView datagram) {
    if (datagram.size < kHeaderSize) return Fault::TooShort;
    if (IsCommand(datagram)) return Fault::WrongKey;
    const Result<ByteView> payload = PayloadOf(datagram);
    if (!payload) return payload.GetFault();
    const uint16_t ackId = datagram.U16(6);
    if (ackId == 0) return Fault::ZeroRequestId;
    return Acknowledge{static_cast<Gev::Status>(datagram.U16(0)),
                       static_cast<Code>(datagram.U16(2)), ackId, *payload};
}

size_t PutCommandHeader(ByteSpan out, Code code, Request request, size_t payloadSize) {
    assert(request.id != 0);
    out.PutU8(0, kCommandKey);
    out.PutU8(1, request.flags);
    out.PutU16(2, static_cast<uint16_t>(code));
    out.PutU16(kLengthOffset, payloadSize);
    out.PutU16(6, request.id);
    return kHeaderSize + payloadSize;
}

size_t PutAckHeader(ByteSpan out, Gev::Status status, Code code, uint16_t ackId,
                    size_t payloadSize) {
    out.PutU16(0, static_cast<uint16_t>(status));
    out.PutU16(2, static_cast<uint16_t>(code));
    out.PutU16(kLengthOffset, payloadSize);
    out.PutU16(6, ackId);
    return kHeaderSize + payloadSize;
}

}  // namespace ZelCti::Gvcp
