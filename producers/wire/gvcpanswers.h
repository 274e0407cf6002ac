// Acknowledges of a device. An error has either no payload or its regular one: decoders accept
// both, and return zeros where there is no payload. Whoever gets an acknowledge looks at its status
// first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "producers/wire/gvcp.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelCti::Gvcp {

// A header alone: FORCEIP, EVENT, EVENTDATA and ACTION, errors, and NOT_IMPLEMENTED for an unknown
// command.
size_t EncodeAck(ByteSpan out, Gev::Status status, Code command, uint16_t ackId);

// The bootstrap registers up to the user-defined name, as the interface that got the command has
// them.
struct Discovery {
    uint16_t versionMajor = 0;
    uint16_t versionMinor = 0;
    uint32_t deviceMode = 0;
    uint64_t mac = 0;  // 48 bits
    uint32_t supportedIpConfiguration = 0;
    uint32_t currentIpConfiguration = 0;
    uint32_t currentIp = 0;
    uint32_t currentSubnetMask = 0;
    uint32_t currentDefaultGateway = 0;
    // Encoding cuts off what does not fit. What devices send may be in no known character set.
    std::string_view manufacturerName;
    std::string_view modelName;
    std::string_view deviceVersion;
    std::string_view manufacturerInformation;
    std::string_view serialNumber;
    std::string_view userDefinedName;
};
constexpr size_t kDiscoverySize = 248;
Result<Discovery> DecodeDiscoveryAck(const Acknowledge& ack);
size_t EncodeDiscoveryAck(ByteSpan out, uint16_t ackId, const Discovery& discovery);

// The values of the registers that were asked for, in order; after an error those before it (from
// memory: do not use them).
Result<Words> DecodeReadRegAck(const Acknowledge& ack);
size_t EncodeReadRegAck(ByteSpan out, Gev::Status status, uint16_t ackId, const uint32_t* values,
                        size_t count);

// The number of registers written; after an error also the index of the one that failed.
Result<uint16_t> DecodeWriteRegAck(const Acknowledge& ack);
size_t EncodeWriteRegAck(ByteSpan out, Gev::Status status, uint16_t ackId, uint16_t index);

// The data may be shorter or longer than what was asked for.
Result<Memory> DecodeReadMemAck(const Acknowledge& ack);
size_t EncodeReadMemAck(ByteSpan out, uint16_t ackId, const Memory& memory);

// The number of bytes written. Some devices send the address in its place, so it proves nothing.
Result<uint16_t> DecodeWriteMemAck(const Acknowledge& ack);
size_t EncodeWriteMemAck(ByteSpan out, Gev::Status status, uint16_t ackId, uint16_t index);

// Milliseconds until the acknowledge of the command comes. Only 16 of the 32 bits are used: sources
// disagree on the others.
Result<uint16_t> DecodePendingAck(const Acknowledge& ack);
size_t EncodePendingAck(ByteSpan out, uint16_t ackId, uint16_t milliseconds);

}  // namespace ZelCti::Gvcp
