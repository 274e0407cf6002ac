// GVSP, the stream protocol of GigE Vision: the headers of packets.
//
// A block (a frame) is a leader, data packets and a trailer, all with the same block id; or one
// all-in packet. Packet ids count from 0, the leader, to the trailer. Extended headers have longer
// ids; each packet says which header it has.
//
// Leaders: gvspleader.h. Trailers: gvsptrailer.h. Data, and blocks in one packet: gvsppayload.h.
// How blocks are cut into packets: gvsppackets.h. Blocks of the type GenDC: gendc.h.
//
// Decoders return views into the datagram. Encoders write into memory of the caller, which must
// hold the result, and return its size; reserved bytes are 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "producers/wire/byteview.h"
#include "producers/wire/gevstatus.h"
#include "producers/wire/result.h"

namespace ZelCti::Gvsp {

constexpr size_t kHeaderSize = 8;
constexpr size_t kExtendedHeaderSize = 20;
constexpr size_t kIpUdpHeaderSize = 28;  // the packet size register counts these, too

enum class PacketFormat : uint8_t {
    Leader = 1,
    Trailer = 2,
    Payload = 3,
    AllIn = 4,
    PayloadH264 = 5,
    PayloadMultiZone = 6,
    PayloadMultiPart = 7,
    PayloadGenDc = 8,
};

// Flags of extended headers; those above 0x00FF are the device's own.
constexpr uint16_t kFlagResent = 0x0001;
constexpr uint16_t kFlagPreviousBlockDropped = 0x0002;
constexpr uint16_t kFlagNoSuchPacket = 0x0004;  // a resend request named packets beyond the block

struct Header {
    bool extended = false;
    Gev::Status status = Gev::Status::Success;
    PacketFormat format = PacketFormat::Payload;
    uint64_t blockId = 0;   // 16 bits unless extended
    uint32_t packetId = 0;  // 24 bits unless extended

    // In extended headers only.
    uint16_t flags = 0;
    uint8_t count = 0;  // in leaders and trailers: parts, or additional zones (the low five bits)
};

constexpr size_t HeaderSize(bool extended) {
    return extended ? kExtendedHeaderSize : kHeaderSize;
}

// A packet and what follows its header. One whose status is an error has only a header, whose ids
// are those of the packet that it answers for.
struct Packet {
    Header header;
    ByteView content;
};

Result<Packet> DecodePacket(ByteView datagram);
size_t EncodeHeader(ByteSpan out, const Header& header);

// The packets that answer a resend request. The header of a packet that is sent again; and that of
// one that is not there, which has no content. Whether the latter has format 3 whatever was lost is
// known from one device.
Header ResentHeader(Header sent);
bool IsResent(const Header& header);
Header RefusedHeader(const Header& asked, Gev::Status reason);

// What a receiver does about a packet with this status.
enum class Delivery {
    Content,            // nothing: the content is valid, whether sent once or again
    AskLater,           // the packet is not ready
    Gone,               // give it up
    GoneWithAllBefore,  // give up the packets before it in the block as well
};
Delivery DeliveryOf(Gev::Status status);

// A test packet fills an IP datagram of the size in the packet size register; a receiver looks only
// at the length. Block id 0 is known from two implementations, the counter as its content is ours.
// Of a size without room for a header there is none: 0.
constexpr size_t TestPacketSize(size_t ipSize) {
    return ipSize < kIpUdpHeaderSize + kHeaderSize ? 0 : ipSize - kIpUdpHeaderSize;
}
size_t EncodeTestPacket(ByteSpan out, size_t ipSize);

}  // namespace ZelCti::Gvsp
