// The data packets of GVSP, and blocks in one packet.
#pragma once

#include "producers/wire/gvsptrailer.h"

namespace ZelCti::Gvsp {

// What stands before the data, by the format of the packet; nothing in generic ones.
struct H264Prefix {
    uint64_t timestamp = 0;
};
struct MultiZonePrefix {
    uint8_t zoneId = 0;  // five bits
    bool lastOfZone = false;
    uint64_t offset = 0;  // 48 bits
};
struct MultiPartPrefix {
    uint8_t partId = 0;  // from 0
    bool lastOfPart = false;
    uint8_t zoneId = 0;
    bool lastOfZone = false;
    uint64_t offset = 0;  // 48 bits; whether of the block or of the part is not known, see below
};
struct GenDcPrefix {  // known from one source
    uint32_t dataSize = 0;
    uint64_t offset = 0;  // where the data belong in the container
    uint8_t dataFlags = 0;
    uint8_t flowFlags = 0;
    uint16_t flowId = 0;
};
using PayloadPrefix =
    std::variant<std::monostate, H264Prefix, MultiZonePrefix, MultiPartPrefix, GenDcPrefix>;

// GenDcPrefix::dataFlags: what the data are, two bits, and where a descriptor begins and ends.
constexpr uint8_t kGenDcContentMask = 0xC0;
constexpr uint8_t kGenDcDataOnly = 0x00;
constexpr uint8_t kGenDcFinalDescriptor = 0x40;
constexpr uint8_t kGenDcFinalDescriptorAndData = 0x80;
constexpr uint8_t kGenDcPreliminaryDescriptorData = 0xC0;
constexpr uint8_t kGenDcDescriptorStarts = 0x20;
constexpr uint8_t kGenDcDescriptorEnds = 0x10;
// GenDcPrefix::flowFlags.
constexpr uint8_t kGenDcFirstOfFlow = 0x80;
constexpr uint8_t kGenDcLastOfFlow = 0x40;

// Offsets of multi-part packets count from the begin of the block in the implementations that were
// seen. A camera whose part k > 0 has an offset below the sum of the lengths before it counts from
// the begin of the part.

constexpr size_t PrefixSize(PacketFormat format) {
    switch (format) {
        case PacketFormat::PayloadH264:
        case PacketFormat::PayloadMultiZone:
        case PacketFormat::PayloadMultiPart:
            return 8;
        case PacketFormat::PayloadGenDc:
            return 16;
        default:
            return 0;
    }
}

// The data may be followed by padding up to the packet size: who knows the size of the block cuts
// them there. GenDC data are cut to the size that the prefix states, when there are as many.
struct Payload {
    PayloadPrefix prefix;
    ByteView data;
};
Result<Payload> DecodePayload(const Packet& packet);
size_t EncodePrefix(ByteSpan out, const PayloadPrefix& prefix);

// A block in one packet: behind the header a leader, a trailer, and the data with the prefix of
// H.264 and multi-zone. There is none of multi-part and GenDC. The layout is known from one source.
struct AllIn {
    Leader leader;
    Trailer trailer;
    Payload payload;
};
Result<AllIn> DecodeAllIn(const Packet& packet);
size_t EncodeAllIn(ByteSpan out, const AllIn& block);

}  // namespace ZelCti::Gvsp
