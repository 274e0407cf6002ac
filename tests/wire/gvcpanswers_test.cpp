// Acknowledges of devices, as captured, and what devices send instead.

#include "producers/wire/gvcpanswers.h"

#include <gtest/gtest.h>

#include "tests/wire/bytes.h"
#include "tests/wire/gvcpmessage.h"

namespace ZelCti::Gvcp {

using namespace WireTest;
using Gev::Status;

namespace {

constexpr std::string_view kDiscoveryAck =
    "0000000300f80001000200018000000100000200000000020000000700000005"
    "0000000000000000000000000a4d0002000000000000000000000000ffffff00"
    "0000000000000000000000000000000056657269667900000000000000000000"
    "0000000000000000000000000000000050794465766963650000000000000000"
    "00000000000000000000000000000000312e3000000000000000000000000000"
    "0000000000000000000000000000000068616e64206d61646500000000000000"
    "0000000000000000000000000000000000000000000000000000000000000000"
    "505930303031000000000000000000006c656674000000000000000000000000";

constexpr std::string_view kFakeCamera =
    "0000000300f8ffff000000000000000000000000000000000000000000000000"
    "0000000000000000000000000a4d000200000000000000000000000000000000"
    "0000000000000000000000000000000041726176697300000000000000000000"
    "0000000000000000000000000000000046616b65000000000000000000000000"
    "00000000000000000000000000000000302e382e323600000000000000000000"
    "000000000000000000000000000000006e6f6e65000000000000000000000000"
    "0000000000000000000000000000000000000000000000000000000000000000"
    "4745563031000000000000000000000000000000000000000000000000000000";

template <typename T>
std::optional<Fault> FaultOfAnswer(Result<T> (*decode)(const Acknowledge&), Status status,
                                   const Bytes& payload) {
    return FaultOf(decode({status, Code{}, 1, ViewOf(payload)}));
}

Bytes EncodedDiscovery(uint16_t ackId, const Discovery& discovery) {
    return Encoded([&](ByteSpan out) { return EncodeDiscoveryAck(out, ackId, discovery); });
}

// An acknowledge of WRITEREG, WRITEMEM or a pending one: nothing but a number.
void ExpectNumber(std::string_view digits, Status status, Code code,
                  Result<uint16_t> (*decode)(const Acknowledge&), uint16_t number) {
    const AckMessage message(digits);
    EXPECT_EQ(status, message.ack.status);
    EXPECT_EQ(code, message.ack.code);
    const auto decoded = decode(message.ack);
    ASSERT_TRUE(decoded) << digits;
    EXPECT_EQ(number, *decoded) << digits;
}

}  // namespace

TEST(GvcpAnswerTest, Discovery) {
    const AckMessage message(kDiscoveryAck);
    EXPECT_EQ(Code::DiscoveryAck, message.ack.code);
    const auto discovery = DecodeDiscoveryAck(message.ack);
    ASSERT_TRUE(discovery);
    EXPECT_EQ(2, discovery->versionMajor);
    EXPECT_EQ(1, discovery->versionMinor);
    EXPECT_EQ(0x80000001U, discovery->deviceMode);
    EXPECT_EQ(0x020000000002U, discovery->mac);
    EXPECT_EQ(7U, discovery->supportedIpConfiguration);
    EXPECT_EQ(5U, discovery->currentIpConfiguration);
    EXPECT_EQ(0x0A4D0002U, discovery->currentIp);
    EXPECT_EQ(0xFFFFFF00U, discovery->currentSubnetMask);
    EXPECT_EQ(0U, discovery->currentDefaultGateway);
    EXPECT_EQ("Verify", discovery->manufacturerName);
    EXPECT_EQ("PyDevice", discovery->modelName);
    EXPECT_EQ("1.0", discovery->deviceVersion);
    EXPECT_EQ("hand made", discovery->manufacturerInformation);
    EXPECT_EQ("PY0001", discovery->serialNumber);
    EXPECT_EQ("left", discovery->userDefinedName);

    EXPECT_EQ(message.bytes,
              EncodedDiscovery(1, {2, 1, 0x80000001, 0x020000000002, 7, 5, 0x0A4D0002, 0xFFFFFF00,
                                   0, "Verify", "PyDevice", "1.0", "hand made", "PY0001", "left"}));
}

TEST(GvcpAnswerTest, DiscoveryWithEmptyFields) {
    const AckMessage message(kFakeCamera);
    const auto discovery = DecodeDiscoveryAck(message.ack);
    ASSERT_TRUE(discovery);
    EXPECT_EQ(0U, discovery->mac);
    EXPECT_EQ(0x0A4D0002U, discovery->currentIp);
    EXPECT_EQ("Aravis", discovery->manufacturerName);
    EXPECT_EQ("Fake", discovery->modelName);
    EXPECT_EQ("0.8.26", discovery->deviceVersion);
    EXPECT_EQ("none", discovery->manufacturerInformation);
    EXPECT_EQ("GEV01", discovery->serialNumber);
    EXPECT_EQ("", discovery->userDefinedName);
    EXPECT_EQ(message.bytes, EncodedDiscovery(0xFFFF, {0, 0, 0, 0, 0, 0, 0x0A4D0002, 0, 0, "Aravis",
                                                       "Fake", "0.8.26", "none", "GEV01", ""}));
}

TEST(GvcpAnswerTest, DiscoveryTextsFillTheirFieldsOrEndAtZero) {
    const std::string text(50, 'x');
    Bytes bytes = EncodedDiscovery(
        1, {0, 0, 0, 0, 0, 0, 0, 0, 0x0A0000FE, text, text, text, text, text, text});
    ASSERT_EQ(256U, bytes.size());
    EXPECT_EQ(Hex("0a0000fe 7878"), Bytes(bytes.begin() + 8 + 68, bytes.begin() + 8 + 74));
    bytes[8 + 232 + 3] = 0;  // what follows the end of a text may be anything

    const auto ack = DecodeAcknowledge(ViewOf(bytes));
    ASSERT_TRUE(ack);
    const auto discovery = DecodeDiscoveryAck(*ack);
    ASSERT_TRUE(discovery);
    EXPECT_EQ(0x0A0000FEU, discovery->currentDefaultGateway);
    EXPECT_EQ(text.substr(0, 32), discovery->manufacturerName);
    EXPECT_EQ(text.substr(0, 32), discovery->modelName);
    EXPECT_EQ(text.substr(0, 32), discovery->deviceVersion);
    EXPECT_EQ(text.substr(0, 48), discovery->manufacturerInformation);
    EXPECT_EQ(text.substr(0, 16), discovery->serialNumber);
    EXPECT_EQ("xxx", discovery->userDefinedName);
}

TEST(GvcpAnswerTest, DiscoveryOfAnotherSizeIsAFault) {
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeDiscoveryAck, Status::Success, Bytes(247)));
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeDiscoveryAck, Status::Success, Bytes(249)));
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeDiscoveryAck, Status::Success, {}));
}

TEST(GvcpAnswerTest, ReadReg) {
    const AckMessage one("000000810004ff3e00000002");
    EXPECT_EQ(Code::ReadRegAck, one.ack.code);
    const auto value = DecodeReadRegAck(one.ack);
    ASSERT_TRUE(value);
    EXPECT_EQ(std::vector<uint32_t>{2}, ValuesOf(*value));

    const AckMessage four("00000081001000040000000200000bb8f87e007f000001f4");
    const std::vector<uint32_t> expected{2, 3000, 0xF87E007F, 500};
    const auto values = DecodeReadRegAck(four.ack);
    ASSERT_TRUE(values);
    EXPECT_EQ(expected, ValuesOf(*values));
    EXPECT_EQ(four.bytes, Encoded([&](ByteSpan out) {
                  return EncodeReadRegAck(out, Status::Success, 4, expected.data(), 4);
              }));
    // After an error, the values before it.
    EXPECT_EQ(Hex("80030081 0004 0005 00000002"), Encoded([&](ByteSpan out) {
                  return EncodeReadRegAck(out, Status::InvalidAddress, 5, expected.data(), 1);
              }));

    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeReadRegAck, Status::Success, Bytes(5)));
    EXPECT_EQ(Fault::TooShort, FaultOfAnswer(&DecodeReadRegAck, Status::Success, {}));
}

TEST(GvcpAnswerTest, WriteReg) {
    ExpectNumber("000000830004ff3600000001", Status::Success, Code::WriteRegAck, DecodeWriteRegAck,
                 1);
    ExpectNumber("800400830004000500000002", Status::WriteProtect, Code::WriteRegAck,
                 DecodeWriteRegAck, 2);
    ExpectNumber("800600830004000600000000", Status::AccessDenied, Code::WriteRegAck,
                 DecodeWriteRegAck, 0);
    EXPECT_EQ(Hex("000000830004ff3600000001"), Encoded([](ByteSpan out) {
                  return EncodeWriteRegAck(out, Status::Success, 0xFF36, 1);
              }));
    EXPECT_EQ(Hex("800400830004000500000002"), Encoded([](ByteSpan out) {
                  return EncodeWriteRegAck(out, Status::WriteProtect, 5, 2);
              }));

    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeWriteRegAck, Status::Success, Bytes(2)));
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeWriteRegAck, Status::Success, Bytes(8)));
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeWriteRegAck, Status::Success, {}));
}

TEST(GvcpAnswerTest, ReadMem) {
    // The rest of the 512 bytes are zeros.
    Bytes bytes =
        Hex("000000850204ff15000002004c6f63616c3a6172762d66616b652d63616d657261"
            "2e786d6c3b31303030303b33653637");
    bytes.resize(524);
    const auto ack = DecodeAcknowledge(ViewOf(bytes));
    ASSERT_TRUE(ack);
    EXPECT_EQ(Code::ReadMemAck, ack->code);
    const auto memory = DecodeReadMemAck(*ack);
    ASSERT_TRUE(memory);
    EXPECT_EQ(0x200U, memory->address);
    ASSERT_EQ(512U, memory->data.size);
    EXPECT_STREQ("Local:arv-fake-camera.xml;10000;3e67",
                 reinterpret_cast<const char*>(memory->data.data));
    EXPECT_EQ(bytes, Encoded([&](ByteSpan out) { return EncodeReadMemAck(out, 0xFF15, *memory); }));

    EXPECT_EQ(Fault::TooShort, FaultOfAnswer(&DecodeReadMemAck, Status::Success, Bytes(3)));
    EXPECT_EQ(Fault::TooShort, FaultOfAnswer(&DecodeReadMemAck, Status::Success, {}));
}

TEST(GvcpAnswerTest, WriteMem) {
    ExpectNumber("000000870004000c00000010", Status::Success, Code::WriteMemAck, DecodeWriteMemAck,
                 16);
    EXPECT_EQ(Hex("000000870004000c00000010"), Encoded([](ByteSpan out) {
                  return EncodeWriteMemAck(out, Status::Success, 12, 16);
              }));
    // A device that sends the address there, 0x000100E8.
    ExpectNumber("000000870004000c000100e8", Status::Success, Code::WriteMemAck, DecodeWriteMemAck,
                 0xE8);
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodeWriteMemAck, Status::Success, Bytes(3)));
}

TEST(GvcpAnswerTest, Pending) {
    ExpectNumber("000000890004000f000005dc", Status::Success, Code::PendingAck, DecodePendingAck,
                 1500);
    ExpectNumber("000000890004000fffff05dc", Status::Success, Code::PendingAck, DecodePendingAck,
                 1500);
    EXPECT_EQ(Hex("000000890004000f000005dc"),
              Encoded([](ByteSpan out) { return EncodePendingAck(out, 15, 1500); }));
    EXPECT_EQ(Fault::WrongLength, FaultOfAnswer(&DecodePendingAck, Status::Success, Bytes(2)));
}

TEST(GvcpAnswerTest, ErrorsHaveNoPayloadOrTheirRegularOne) {
    const Bytes none;
    const Acknowledge error{Status::Busy, Code{}, 1, ViewOf(none)};
    EXPECT_TRUE(DecodeDiscoveryAck(error));
    const auto values = DecodeReadRegAck(error);
    ASSERT_TRUE(values);
    EXPECT_EQ(0U, values->size());
    const auto memory = DecodeReadMemAck(error);
    ASSERT_TRUE(memory);
    EXPECT_EQ(0U, memory->data.size);
    for (const auto decode : {DecodeWriteRegAck, DecodeWriteMemAck, DecodePendingAck}) {
        const auto number = decode(error);
        ASSERT_TRUE(number);
        EXPECT_EQ(0, *number);
    }

    const Bytes words = Hex("00000200 00000007");
    const Acknowledge regular{Status::Busy, Code{}, 1, ViewOf(words)};
    const auto partial = DecodeReadRegAck(regular);
    ASSERT_TRUE(partial);
    EXPECT_EQ(2U, partial->size());
    const auto part = DecodeReadMemAck(regular);
    ASSERT_TRUE(part);
    EXPECT_EQ(0x200U, part->address);
    EXPECT_EQ(4U, part->data.size);
}

}  // namespace ZelCti::Gvcp
