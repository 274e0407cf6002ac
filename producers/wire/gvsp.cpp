#include "producers/wire/gvsp.h"

namespace ZelCti::Gvsp {

namespace {

constexpr uint8_t kExtendedIds = 0x80;
constexpr uint8_t kFormatMask = 0x0F;

bool IsFormat(uint8_t value) {
    return value >= static_cast<uint8_t>(PacketFormat::Leader) &&
           value <= static_cast<uint8_t>(PacketFormat::PayloadGenDc);
}

}  // namespace

Result<Packet> DecodePacket(ByteView datagram) {
    if (datagram.size < kHeaderSize) return Fault::TooShort;
    Header header;
    header.status = static_cast<Gev::Status>(datagram.U16(0));
    header.extended = (datagram.U8(4) & kExtendedIds) != 0;
    if (datagram.size < HeaderSize(header.extended)) return Fault::TooShort;

    const auto format = static_cast<uint8_t>(datagram.U8(4) & kFormatMask);
    if (!IsFormat(format)) return Fault::UnknownFormat;
    header.format = static_cast<PacketFormat>(format);
    if (header.extended) {
        header.flags = datagram.U16(2);
        header.count = datagram.U8(7);
        header.blockId = datagram.U64(8);
        header.packetId = datagram.U32(16);
    } else {
        header.blockId = datagram.U16(2);
        header.packetId = datagram.U24(5);
    }
    return Packet{header, datagram.From(HeaderSize(header.extended))};
}

size_t EncodeHeader(ByteSpan out, const Header& header) {
    const auto format = static_cast<uint8_t>(header.format);
    out.PutU16(0, static_cast<uint16_t>(header.status));
    if (!header.extended) {
        out.PutU16(2, header.blockId);
        out.PutU8(4, format);
        out.PutU24(5, header.packetId);
        return kHeaderSize;
    }
    out.PutU16(2, header.flags);
    out.PutU8(4, kExtendedIds | format);
    out.PutU16(5, 0);
    out.PutU8(7, header.count);
    out.PutU64(8, header.blockId);
    out.PutU32(16, header.packetId);
    return kExtendedHeaderSize;
}

Header ResentHeader(Header sent) {
    sent.status = Gev::Status::PacketResend;
    sent.flags |= kFlagResent;
    return sent;
}

bool IsResent(const Header& header) {
    return header.status == Gev::Status::PacketResend || (header.flags & kFlagResent) != 0;
}

Header RefusedHeader(const Header& asked, Gev::Status reason) {
    Header header;
    header.extended = asked.extended;
    header.status = reason;
    header.blockId = asked.blockId;
    header.packetId = asked.packetId;
    return header;
}

Delivery DeliveryOf(Gev::Status status) {
    switch (status) {
        case Gev::Status::PacketNotYetAvailable:
        case Gev::Status::PacketTemporarilyUnavailable:
            return Delivery::AskLater;
        case Gev::Status::PacketAndPrevRemovedFromMemory:
            return Delivery::GoneWithAllBefore;
        default:
            return Gev::IsError(status) ? Delivery::Gone : Delivery::Content;
    }
}

size_t EncodeTestPacket(ByteSpan out, size_t ipSize) {
    const size_t size = TestPacketSize(ipSize);
    if (size == 0) return 0;
    EncodeHeader(out, {});
    for (size_t i = kHeaderSize; i < size; ++i)
        out.PutU8(i, i - kHeaderSize);
    return size;
}

}  // namespace ZelCti::Gvsp
