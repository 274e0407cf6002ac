// Headers of commands and acknowledges.

#include "producers/wire/gvcp.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "producers/wire/gvcpanswers.h"
#include "tests/wire/bytes.h"
#include "tests/wire/gvcpmessage.h"

namespace ZelCti::Gvcp {

using namespace WireTest;

namespace {

void ExpectHeader(const CommandMessage& message, Code code, uint8_t flags, uint16_t requestId,
                  size_t payloadSize) {
    EXPECT_EQ(code, message.command.code);
    EXPECT_EQ(flags, message.command.flags);
    EXPECT_EQ(requestId, message.command.requestId);
    EXPECT_EQ(payloadSize, message.command.payload.size);
    EXPECT_EQ(message.bytes.data() + 8, message.command.payload.data);
}

// Of an acknowledge that is nothing but a header.
void ExpectBareAck(std::string_view digits, Gev::Status status, Code command, uint16_t ackId) {
    const AckMessage message(digits);
    EXPECT_EQ(status, message.ack.status);
    EXPECT_EQ(AckOf(command), message.ack.code);
    EXPECT_EQ(ackId, message.ack.ackId);
    EXPECT_EQ(0U, message.ack.payload.size);
    EXPECT_EQ(message.bytes,
              Encoded([&](ByteSpan out) { return EncodeAck(out, status, command, ackId); }));
}

std::optional<Fault> HeaderFaultOfCommand(std::string_view digits) {
    const Bytes bytes = Hex(digits);
    return FaultOf(DecodeCommand(ViewOf(bytes)));
}

std::optional<Fault> HeaderFaultOfAck(std::string_view digits) {
    const Bytes bytes = Hex(digits);
    return FaultOf(DecodeAcknowledge(ViewOf(bytes)));
}

}  // namespace

TEST(GvcpTest, HeadersOfCommands) {
    ExpectHeader(CommandMessage("420100020000ffff"), Code::DiscoveryCmd, 0x01, 0xFFFF, 0);
    ExpectHeader(CommandMessage("4211000200000001"), Code::DiscoveryCmd, 0x11, 1, 0);
    ExpectHeader(CommandMessage("42000040000cff150000ffff0000000200000003"), Code::PacketResendCmd,
                 0x00, 0xFF15, 12);
    ExpectHeader(CommandMessage("42810100001400121122334400000001ffffffff17979cfe362a0000"),
                 Code::ActionCmd, 0x81, 0x12, 20);
    // An unknown one has a header as well, so that it can be answered.
    ExpectHeader(CommandMessage("420102000004000e00000000"), static_cast<Code>(0x200), 0x01, 14, 4);
}

TEST(GvcpTest, AcknowledgesThatAreHeadersAlone) {
    ExpectBareAck("000000050000001f", Gev::Status::Success, Code::ForceIpCmd, 0x1F);
    ExpectBareAck("000000c100000001", Gev::Status::Success, Code::EventCmd, 1);
    ExpectBareAck("000000c300000001", Gev::Status::Success, Code::EventDataCmd, 1);
    ExpectBareAck("0000010100000011", Gev::Status::Success, Code::ActionCmd, 0x11);
    ExpectBareAck("8005008100000008", Gev::Status::BadAlignment, Code::ReadRegCmd, 8);
    ExpectBareAck("800500850000000a", Gev::Status::BadAlignment, Code::ReadMemCmd, 10);
    ExpectBareAck("800102010000000e", Gev::Status::NotImplemented, static_cast<Code>(0x200), 14);
}

TEST(GvcpTest, MalformedHeadersAreFaults) {
    EXPECT_EQ(Fault::TooShort, HeaderFaultOfCommand(""));
    EXPECT_EQ(Fault::TooShort, HeaderFaultOfCommand("4201000200000"
                                                    "0"));
    EXPECT_EQ(Fault::WrongKey, HeaderFaultOfCommand("430100020000ffff"));
    EXPECT_EQ(Fault::ZeroRequestId, HeaderFaultOfCommand("4201000200000000"));
    // The length in the header: more than there is, and less.
    EXPECT_EQ(Fault::TooShort, HeaderFaultOfCommand("420100800004ff3e000a00"));
    EXPECT_EQ(Fault::TooShort, HeaderFaultOfCommand("42010080ffffff3e00000a00"));
    EXPECT_EQ(Fault::WrongLength, HeaderFaultOfCommand("420100800004ff3e00000a0000"));

    EXPECT_EQ(Fault::TooShort, HeaderFaultOfAck("000000050000"));
    EXPECT_EQ(Fault::WrongKey, HeaderFaultOfAck("420100020000ffff"));
    EXPECT_EQ(Fault::ZeroRequestId, HeaderFaultOfAck("0000000500000000"));
    EXPECT_EQ(Fault::TooShort, HeaderFaultOfAck("000000810004ff3e000002"));
    EXPECT_EQ(Fault::WrongLength, HeaderFaultOfAck("000000810000ff3e00000002"));
}

TEST(GvcpTest, KeyTellsCommandsFromAcknowledges) {
    const Bytes command = Hex("42");
    const Bytes ack = Hex("00");
    const Bytes empty;
    EXPECT_TRUE(IsCommand(ViewOf(command)));
    EXPECT_FALSE(IsCommand(ViewOf(ack)));
    EXPECT_FALSE(IsCommand(ViewOf(empty)));
}

TEST(GvcpTest, RequestIdsSkipZero) {
    EXPECT_EQ(1, NextRequestId(0));
    EXPECT_EQ(65535, NextRequestId(65534));
    EXPECT_EQ(1, NextRequestId(65535));
}

TEST(GvcpTest, NamesOfStatusesAndFaults) {
    EXPECT_STREQ("SUCCESS", StatusName(Gev::Status::Success));
    EXPECT_STREQ("PACKET_AND_PREV_REMOVED_FROM_MEMORY",
                 StatusName(static_cast<Gev::Status>(0x8011)));
    EXPECT_STREQ("LEADER_TRAILER_OVERFLOW", StatusName(static_cast<Gev::Status>(0x8017)));
    EXPECT_STREQ("ERROR", StatusName(static_cast<Gev::Status>(0x8FFF)));
    EXPECT_EQ(nullptr, StatusName(static_cast<Gev::Status>(0x8018)));
    EXPECT_TRUE(IsError(Gev::Status::NotImplemented));
    EXPECT_FALSE(IsError(Gev::Status::PacketResend));

    std::set<std::string> texts;
    for (int i = 0; i <= static_cast<int>(Fault::UnknownPayloadType); ++i)
        texts.insert(FaultText(static_cast<Fault>(i)));
    EXPECT_EQ(static_cast<size_t>(Fault::UnknownPayloadType) + 1, texts.size());
}

}  // namespace ZelCti::Gvcp
