// GVCP, the control protocol of GigE Vision: one UDP datagram for each command and each
// acknowledge. This header has what all of them share; gvcpcommands.h, gvcpevents.h and
// gvcpanswers.h have what follows the header of 8 bytes.
//
// Decoders check the form of a message: its length, and what it counts. Addresses of registers are
// checked by who executes the command, as they come after the sender's privilege. Views that
// decoders return lie in the datagram.
//
// Encoders write into memory of the caller, which must hold the message: kMaxMessageSize is enough
// for all of them. They return the message's size. Reserved bytes are 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "producers/wire/byteview.h"
#include "producers/wire/gevstatus.h"
#include "producers/wire/result.h"

namespace ZelCti::Gvcp {

constexpr uint16_t kPort = 3956;  // of every device

// A message is an IP datagram of at most 576 bytes, 28 of them the headers of IP and UDP (from
// memory).
constexpr size_t kHeaderSize = 8;
constexpr size_t kMaxMessageSize = 548;
constexpr size_t kMaxPayloadSize = kMaxMessageSize - kHeaderSize;

constexpr uint8_t kCommandKey = 0x42;  // the first byte of a command; no status begins with it

enum class Code : uint16_t {
    DiscoveryCmd = 0x0002,
    DiscoveryAck = 0x0003,
    ForceIpCmd = 0x0004,
    ForceIpAck = 0x0005,
    PacketResendCmd = 0x0040,  // answered by stream packets
    ReadRegCmd = 0x0080,
    ReadRegAck = 0x0081,
    WriteRegCmd = 0x0082,
    WriteRegAck = 0x0083,
    ReadMemCmd = 0x0084,
    ReadMemAck = 0x0085,
    WriteMemCmd = 0x0086,
    WriteMemAck = 0x0087,
    PendingAck = 0x0089,
    EventCmd = 0x00C0,
    EventAck = 0x00C1,
    EventDataCmd = 0x00C2,
    EventDataAck = 0x00C3,
    ActionCmd = 0x0100,
    ActionAck = 0x0101,
};

// The acknowledge of any command, also of an unknown one.
constexpr Code AckOf(Code command) {
    return static_cast<Code>(static_cast<uint16_t>(command) + 1);
}

// Flags of commands. The same bit means different things in different commands.
namespace Flag {
constexpr uint8_t kAckRequired = 0x01;
constexpr uint8_t kBroadcastAck = 0x10;  // DISCOVERY, FORCEIP: the answer may be broadcast
constexpr uint8_t kExtendedIds = 0x10;   // PACKETRESEND, EVENT, EVENTDATA: 64-bit block ids
constexpr uint8_t kScheduled = 0x80;     // ACTION: at a time that the command says
}  // namespace Flag

// A request id is never 0.
constexpr uint16_t NextRequestId(uint16_t id) {
    return id == UINT16_MAX ? 1 : static_cast<uint16_t>(id + 1);
}

// What the sender of a command chooses. Encoders add the flags that say which form the payload has.
struct Request {
    uint16_t id;
    uint8_t flags = Flag::kAckRequired;
};

struct Command {
    Code code;  // may be unknown
    uint8_t flags;
    uint16_t requestId;
    ByteView payload;

    bool Has(uint8_t flag) const { return (flags & flag) != 0; }
};

struct Acknowledge {
    Gev::Status status;
    Code code;
    uint16_t ackId;  // the request id of the command
    ByteView payload;
};

// Whether a datagram is a command or else an acknowledge.
inline bool IsCommand(ByteView datagram) {
    return datagram.size != 0 && datagram.U8(0) == kCommandKey;
}

// The header of any message, also of an unknown command: that is answered by NOT_IMPLEMENTED.
Result<Command> DecodeCommand(ByteView datagram);
Result<Acknowledge> DecodeAcknowledge(ByteView datagram);

// Writes a header before a payload of that size, and returns the size of both.
size_t PutCommandHeader(ByteSpan out, Code code, Request request, size_t payloadSize);
size_t PutAckHeader(ByteSpan out, Gev::Status status, Code code, uint16_t ackId,
                    size_t payloadSize);

}  // namespace ZelCti::Gvcp
