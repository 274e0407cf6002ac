// Packets of the stream protocol: from fields to bytes, and back.

#include "producers/wire/gvsp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producers/wire/gvsppayload.h"
#include "tests/wire/gvspsamples.h"

namespace ZelCti::Gvsp {

using namespace WireTest;

namespace {

size_t EncodePayload(ByteSpan out, const Payload& payload) {
    const size_t size = EncodePrefix(out, payload.prefix);
    out.PutBytes(size, payload.data);
    return size + payload.data.size;
}

// The content of a packet decoded, and made again of what came out.
size_t RemakeContent(ByteSpan out, const Packet& packet) {
    switch (packet.header.format) {
        case PacketFormat::Leader:
            return EncodeLeader(out, *DecodeLeader(packet));
        case PacketFormat::Trailer:
            return EncodeTrailer(out, *DecodeTrailer(packet));
        case PacketFormat::AllIn:
            return EncodeAllIn(out, *DecodeAllIn(packet));
        default:
            return Gev::IsError(packet.header.status) ? 0
                                                      : EncodePayload(out, *DecodePayload(packet));
    }
}

Bytes Remade(const Bytes& bytes) {
    const Packet packet = *DecodePacket(ViewOf(bytes));
    return Encoded([&](ByteSpan out) {
        const size_t size = EncodeHeader(out, packet.header);
        return size + RemakeContent(out.From(size), packet);
    });
}

std::optional<Fault> HeaderFault(const char* hex) {
    const Bytes bytes = Hex(hex);
    return FaultOf(DecodePacket(ViewOf(bytes)));
}

}  // namespace

// The samples fix what each field makes of the bytes, so bytes that come back unchanged went
// through the right fields.
TEST(GvspTest, PacketsAreMadeAndReadAsTheyAre) {
    for (const GvspSample& sample : GvspSamples()) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(sample.bytes, Encoded(sample.encode));
        EXPECT_EQ(sample.bytes, Remade(sample.bytes));
    }
}

TEST(GvspTest, HeadersAreFoundByThePacketItself) {
    EXPECT_EQ(Fault::TooShort, HeaderFault(""));
    EXPECT_EQ(Fault::TooShort, HeaderFault("0000 0001 03 0000"));
    EXPECT_EQ(Fault::TooShort, HeaderFault("0000 0000 83 000000 0000000000000001 000000"))
        << "an extended header is longer";
    for (const char* header : {"0000 0001 00 000000", "0000 0001 09 000000", "0000 0001 0f 000000"})
        EXPECT_EQ(Fault::UnknownFormat, HeaderFault(header)) << header;

    const Bytes bytes = Hex("9abc ffff 73 ffffff");
    const Packet widest = *DecodePacket(ViewOf(bytes));
    EXPECT_FALSE(widest.header.extended);
    EXPECT_EQ(Gev::Status{0x9ABC}, widest.header.status) << "of a value that nobody knows";
    EXPECT_EQ(PacketFormat::Payload, widest.header.format) << "the other bits are reserved";
    EXPECT_EQ(0xFFFFU, widest.header.blockId);
    EXPECT_EQ(0xFFFFFFU, widest.header.packetId);
    EXPECT_EQ(0U, widest.content.size);
}

TEST(GvspTest, StatusDecidesWhatAReceiverDoes) {
    using Gev::Status;
    EXPECT_EQ(Delivery::Content, DeliveryOf(Status::Success));
    EXPECT_EQ(Delivery::Content, DeliveryOf(Status::PacketResend));
    EXPECT_EQ(Delivery::AskLater, DeliveryOf(Status::PacketNotYetAvailable));
    EXPECT_EQ(Delivery::AskLater, DeliveryOf(Status::PacketTemporarilyUnavailable));
    EXPECT_EQ(Delivery::GoneWithAllBefore, DeliveryOf(Status::PacketAndPrevRemovedFromMemory));
    for (const auto status : {Status::PacketRemovedFromMemory, Status::PacketUnavailable,
                              Status::Error, Status{0x8001}, Status{0x9000}})
        EXPECT_EQ(Delivery::Gone, DeliveryOf(status)) << static_cast<unsigned>(status);
}

TEST(GvspTest, TestPacketsFillTheirDatagram) {
    const auto testPacket = [](size_t ipSize) {
        return Encoded([&](ByteSpan out) { return EncodeTestPacket(out, ipSize); });
    };
    const Bytes packet = testPacket(576);
    EXPECT_EQ(548U, packet.size());
    EXPECT_EQ(Hex("0000000003000000000102030405060708090a0b0c0d0e0f"),
              Bytes(packet.begin(), packet.begin() + 24));
    EXPECT_EQ(Hex("0000000003000000"), testPacket(36));
    EXPECT_EQ(Bytes{}, testPacket(35));
    EXPECT_EQ(Bytes{}, testPacket(0));
}

}  // namespace ZelCti::Gvsp
