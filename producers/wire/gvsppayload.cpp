#include "producers/wire/gvsppayload.h"

#include <algorithm>

namespace ZelCti::Gvsp {

namespace {

constexpr uint8_t kLastOfPart = 0x40;
constexpr uint8_t kZoneIdMask = 0x3E;
constexpr uint8_t kLastOfZone = 0x01;

uint8_t ZoneIdOf(uint8_t zoneInfo) {
    return static_cast<uint8_t>((zoneInfo & kZoneIdMask) >> 1);
}

unsigned ZoneInfoOf(uint8_t zoneId, bool lastOfZone) {
    return (static_cast<unsigned>(zoneId) << 1 & kZoneIdMask) | (lastOfZone ? kLastOfZone : 0U);
}

// From as many bytes as the prefix has.
PayloadPrefix DecodePrefix(PacketFormat format, ByteView bytes) {
    switch (format) {
        case PacketFormat::PayloadH264:
            return H264Prefix{bytes.U64(0)};
        case PacketFormat::PayloadMultiZone:
            return MultiZonePrefix{ZoneIdOf(bytes.U8(1)), (bytes.U8(1) & kLastOfZone) != 0,
                                   bytes.U48(2)};
        case PacketFormat::PayloadMultiPart:
            return MultiPartPrefix{bytes.U8(0), (bytes.U8(1) & kLastOfPart) != 0,
                                   ZoneIdOf(bytes.U8(1)), (bytes.U8(1) & kLastOfZone) != 0,
                                   bytes.U48(2)};
        case PacketFormat::PayloadGenDc:
            return GenDcPrefix{bytes.U32(0), bytes.U64(4), bytes.U8(12), bytes.U8(13),
                               bytes.U16(14)};
        default:
            return {};
    }
}

size_t EncodeFields(ByteSpan, std::monostate) {
    return 0;
}

size_t EncodeFields(ByteSpan out, const H264Prefix& prefix) {
    out.PutU64(0, prefix.timestamp);
    return PrefixSize(PacketFormat::PayloadH264);
}

size_t EncodeFields(ByteSpan out, const MultiZonePrefix& prefix) {
    out.PutU8(0, 0);
    out.PutU8(1, ZoneInfoOf(prefix.zoneId, prefix.lastOfZone));
    out.PutU48(2, prefix.offset);
    return PrefixSize(PacketFormat::PayloadMultiZone);
}

size_t EncodeFields(ByteSpan out, const MultiPartPrefix& prefix) {
    out.PutU8(0, prefix.partId);
    out.PutU8(
        1, ZoneInfoOf(prefix.zoneId, prefix.lastOfZone) | (prefix.lastOfPart ? kLastOfPart : 0U));
    out.PutU48(2, prefix.offset);
    return PrefixSize(PacketFormat::PayloadMultiPart);
}

size_t EncodeFields(ByteSpan out, const GenDcPrefix& prefix) {
    out.PutU32(0, prefix.dataSize);
    out.PutU64(4, prefix.offset);
    out.PutU8(12, prefix.dataFlags);
    out.PutU8(13, prefix.flowFlags);
    out.PutU16(14, prefix.flowId);
    return PrefixSize(PacketFormat::PayloadGenDc);
}

bool IsPayload(PacketFormat format) {
    return format == PacketFormat::Payload || PrefixSize(format) != 0;
}

Result<Payload> DecodePayloadAs(PacketFormat format, ByteView bytes) {
    const size_t prefixSize = PrefixSize(format);
    if (bytes.size < prefixSize) return Fault::TooShort;
    Payload payload{DecodePrefix(format, bytes), bytes.From(prefixSize)};
    if (const auto* genDc = std::get_if<GenDcPrefix>(&payload.prefix))
        payload.data.size = std::min<size_t>(payload.data.size, genDc->dataSize);
    return payload;
}

// What the data of a block in one packet are preceded by.
PacketFormat FormatOfAllInData(uint16_t payloadType) {
    switch (BaseType(payloadType)) {
        case PayloadType::H264:
            return PacketFormat::PayloadH264;
        case PayloadType::MultiZone:
            return PacketFormat::PayloadMultiZone;
        default:
            return PacketFormat::Payload;
    }
}

bool FitsAllIn(uint16_t payloadType) {
    const PayloadType type = BaseType(payloadType);
    return type != PayloadType::MultiPart && type != PayloadType::GenDc;
}

}  // namespace

Result<Payload> DecodePayload(const Packet& packet) {
    if (!IsPayload(packet.header.format)) return Fault::UnknownFormat;
    return DecodePayloadAs(packet.header.format, packet.content);
}

size_t EncodePrefix(ByteSpan out, const PayloadPrefix& prefix) {
    return std::visit([&](const auto& fields) { return EncodeFields(out, fields); }, prefix);
}

Result<AllIn> DecodeAllIn(const Packet& packet) {
    const Result<Leader> leader = DecodeLeader(packet);
    if (!leader) return leader.GetFault();
    const uint16_t payloadType = leader->payloadType;
    if (!FitsAllIn(payloadType)) return Fault::UnknownPayloadType;

    const size_t leaderSize = LeaderSize(*leader);
    const size_t trailerSize = TrailerSize(payloadType);
    if (packet.content.size < leaderSize + trailerSize) return Fault::TooShort;
    const Result<Trailer> trailer =
        DecodeTrailer({packet.header, packet.content.Sub(leaderSize, trailerSize)});
    if (!trailer) return trailer.GetFault();
    if (trailer->payloadType != payloadType) return Fault::WrongKey;

    const Result<Payload> payload = DecodePayloadAs(FormatOfAllInData(payloadType),
                                                    packet.content.From(leaderSize + trailerSize));
    if (!payload) return payload.GetFault();
    return AllIn{*leader, *trailer, *payload};
}

size_t EncodeAllIn(ByteSpan out, const AllIn& block) {
    size_t size = EncodeLeader(out, block.leader);
    size += EncodeTrailer(out.From(size), block.trailer);
    size += EncodePrefix(out.From(size), block.payload.prefix);
    out.PutBytes(size, block.payload.data);
    return size + block.payload.data.size;
}

}  // namespace ZelCti::Gvsp
