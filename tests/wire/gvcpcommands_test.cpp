// Commands of an application, as captured from programs and devices.

#include "producers/wire/gvcpcommands.h"

#include <gtest/gtest.h>

#include "tests/wire/bytes.h"
#include "tests/wire/gvcpmessage.h"

namespace ZelCti::Gvcp {

using namespace WireTest;

namespace {

constexpr uint8_t kNoFlags = 0;

// A command with that payload and those flags.
template <typename T>
std::optional<Fault> FaultOfPayload(Result<T> (*decode)(const Command&), const Bytes& payload,
                                    uint8_t flags = kNoFlags) {
    return FaultOf(decode({Code{}, flags, 1, ViewOf(payload)}));
}

// The only write of a command.
void ExpectWriteReg(std::string_view digits, uint16_t id, uint32_t address, uint32_t value) {
    const CommandMessage message(digits);
    EXPECT_EQ(Code::WriteRegCmd, message.command.code);
    const auto writes = DecodeWriteReg(message.command);
    ASSERT_TRUE(writes);
    ASSERT_EQ(1U, writes->size());
    EXPECT_EQ(address, (*writes)[0].address);
    EXPECT_EQ(value, (*writes)[0].value);

    const RegisterWrite write{address, value};
    EXPECT_EQ(message.bytes,
              Encoded([&](ByteSpan out) { return EncodeWriteRegCmd(out, {id}, &write, 1); }));
}

void ExpectReadReg(std::string_view digits, uint16_t id, const std::vector<uint32_t>& addresses) {
    const CommandMessage message(digits);
    EXPECT_EQ(Code::ReadRegCmd, message.command.code);
    const auto decoded = DecodeReadReg(message.command);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(addresses, ValuesOf(*decoded));
    EXPECT_EQ(message.bytes, Encoded([&](ByteSpan out) {
                  return EncodeReadRegCmd(out, {id}, addresses.data(), addresses.size());
              }));
}

void ExpectResend(std::string_view digits, uint16_t id, const PacketResend& expected) {
    const CommandMessage message(digits);
    EXPECT_EQ(Code::PacketResendCmd, message.command.code);
    const auto resend = DecodePacketResend(message.command);
    ASSERT_TRUE(resend);
    EXPECT_EQ(expected.extendedIds, resend->extendedIds);
    EXPECT_EQ(expected.streamChannel, resend->streamChannel);
    EXPECT_EQ(expected.blockId, resend->blockId);
    EXPECT_EQ(expected.firstPacket, resend->firstPacket);
    EXPECT_EQ(expected.lastPacket, resend->lastPacket);
    EXPECT_EQ(message.bytes, Encoded([&](ByteSpan out) {
                  return EncodePacketResendCmd(out, {id, kNoFlags}, expected);
              }));
}

void ExpectAction(std::string_view digits, uint16_t id, const Action& expected) {
    const CommandMessage message(digits);
    EXPECT_EQ(Code::ActionCmd, message.command.code);
    const auto action = DecodeAction(message.command);
    ASSERT_TRUE(action);
    EXPECT_EQ(expected.deviceKey, action->deviceKey);
    EXPECT_EQ(expected.groupKey, action->groupKey);
    EXPECT_EQ(expected.groupMask, action->groupMask);
    EXPECT_EQ(expected.time, action->time);
    EXPECT_EQ(message.bytes,
              Encoded([&](ByteSpan out) { return EncodeActionCmd(out, {id}, expected); }));
}

}  // namespace

TEST(GvcpCommandTest, Discovery) {
    EXPECT_EQ(Hex("420100020000ffff"),
              Encoded([](ByteSpan out) { return EncodeDiscoveryCmd(out, {0xFFFF}); }));
    EXPECT_EQ(Hex("4211000200000001"), Encoded([](ByteSpan out) {
                  return EncodeDiscoveryCmd(out, {1, Flag::kAckRequired | Flag::kBroadcastAck});
              }));
}

TEST(GvcpCommandTest, ForceIp) {
    const CommandMessage message(
        "420100040038001f00000200000000020000000000000000000000000a4d0002"
        "000000000000000000000000ffffff0000000000000000000000000000000000");
    const auto forceIp = DecodeForceIp(message.command);
    ASSERT_TRUE(forceIp);
    EXPECT_EQ(0x020000000002U, forceIp->mac);
    EXPECT_EQ(0x0A4D0002U, forceIp->ip);
    EXPECT_EQ(0xFFFFFF00U, forceIp->subnetMask);
    EXPECT_EQ(0U, forceIp->defaultGateway);
    EXPECT_EQ(message.bytes, Encoded([](ByteSpan out) {
                  return EncodeForceIpCmd(out, {0x1F}, {0x020000000002, 0x0A4D0002, 0xFFFFFF00, 0});
              }));

    Bytes payload(56);
    payload[55] = 9;
    const auto gateway = DecodeForceIp({Code::ForceIpCmd, kNoFlags, 1, ViewOf(payload)});
    ASSERT_TRUE(gateway);
    EXPECT_EQ(9U, gateway->defaultGateway);
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeForceIp, Bytes(55)));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeForceIp, Bytes(60)));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeForceIp, {}));
}

TEST(GvcpCommandTest, PacketResend) {
    ExpectResend("42000040000cff150000ffff0000000200000003", 0xFF15, {false, 0, 0xFFFF, 2, 3});
    ExpectResend("421000400014ff1500000000000000020000000300000000ffffffff", 0xFF15,
                 {true, 0, 0xFFFFFFFF, 2, 3});
    ExpectResend("42100040001400090002000000000003000000091122334455667788", 9,
                 {true, 2, 0x1122334455667788, 3, 9});
}

TEST(GvcpCommandTest, PacketResendHasIdsOfItsForm) {
    // The highest byte of a packet id means nothing in the form with 24 bits.
    const CommandMessage message("42000040000c00010003004d55fffffeaaffffff");
    const auto resend = DecodePacketResend(message.command);
    ASSERT_TRUE(resend);
    EXPECT_EQ(3U, resend->streamChannel);
    EXPECT_EQ(77U, resend->blockId);
    EXPECT_EQ(0xFFFFFEU, resend->firstPacket);
    EXPECT_EQ(0xFFFFFFU, resend->lastPacket);
    // What has no room there is cut off.
    EXPECT_EQ(Hex("42000040000c00010003004d00fffffe00ffffff"), Encoded([](ByteSpan out) {
                  return EncodePacketResendCmd(out, {1, kNoFlags},
                                               {false, 3, 0x1004D, 0x55FFFFFE, 0xAAFFFFFF});
              }));

    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodePacketResend, Bytes(20)));
    EXPECT_EQ(Fault::WrongLength,
              FaultOfPayload(&DecodePacketResend, Bytes(12), Flag::kExtendedIds));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodePacketResend, {}));
    EXPECT_EQ(Fault::WrongCount,
              FaultOfPayload(&DecodePacketResend, Hex("0000 0001 00000003 00000002")));
    EXPECT_EQ(std::nullopt,
              FaultOfPayload(&DecodePacketResend, Hex("0000 0001 00000003 00000003")));
}

TEST(GvcpCommandTest, ReadReg) {
    ExpectReadReg("420100800004ff3e00000a00", 0xFF3E, {0x0A00});
    ExpectReadReg("420100800010000400000a00000009380000093400000958", 4,
                  {0x0A00, 0x0938, 0x0934, 0x0958});

    EXPECT_EQ(135U, kMaxReadRegCount);
    EXPECT_EQ(std::nullopt, FaultOfPayload(&DecodeReadReg, Bytes(540)));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeReadReg, Bytes(544)));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeReadReg, {}));
    EXPECT_EQ(Fault::Misaligned, FaultOfPayload(&DecodeReadReg, Bytes(6)));
}

TEST(GvcpCommandTest, WriteReg) {
    ExpectWriteReg("420100820008ff3600000a0000000002", 0xFF36, 0x0A00, 2);
    ExpectWriteReg("420100820008ff5500000d180a4d0001", 0xFF55, 0x0D18, 0x0A4D0001);
    ExpectWriteReg("420100820008ff5700000d000000d48f", 0xFF57, 0x0D00, 54415);
    ExpectWriteReg("420100820008001600000d04c0000240", 0x16, 0x0D04, 0xC0000240);
}

TEST(GvcpCommandTest, WriteRegOfSeveral) {
    const CommandMessage message(
        "42010082001800050000093800000bb800000d08000000000000004800000001");
    const auto writes = DecodeWriteReg(message.command);
    ASSERT_TRUE(writes);
    const RegisterWrite expected[] = {{0x938, 3000}, {0xD08, 0}, {0x48, 1}};
    size_t count = 0;
    for (const RegisterWrite& write : *writes) {
        ASSERT_LT(count, 3U);
        EXPECT_EQ(expected[count].address, write.address);
        EXPECT_EQ(expected[count].value, write.value);
        ++count;
    }
    EXPECT_EQ(3U, count);
    EXPECT_EQ(message.bytes,
              Encoded([&](ByteSpan out) { return EncodeWriteRegCmd(out, {5}, expected, 3); }));

    EXPECT_EQ(67U, kMaxWriteRegCount);
    EXPECT_EQ(std::nullopt, FaultOfPayload(&DecodeWriteReg, Bytes(536)));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeWriteReg, Bytes(544)));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeWriteReg, {}));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeWriteReg, Bytes(12)));
    EXPECT_EQ(Fault::Misaligned, FaultOfPayload(&DecodeWriteReg, Bytes(15)));
}

TEST(GvcpCommandTest, ReadMem) {
    const CommandMessage message("420100840008ff150000020000000200");
    EXPECT_EQ(Code::ReadMemCmd, message.command.code);
    const auto readMem = DecodeReadMem(message.command);
    ASSERT_TRUE(readMem);
    EXPECT_EQ(0x200U, readMem->address);
    EXPECT_EQ(512U, readMem->count);
    EXPECT_EQ(message.bytes, Encoded([](ByteSpan out) {
                  return EncodeReadMemCmd(out, {0xFF15}, {0x200, 512});
              }));

    EXPECT_EQ(std::nullopt, FaultOfPayload(&DecodeReadMem, Hex("00000200 ffff 0218")));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeReadMem, Hex("00000200 0000 021c")));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeReadMem, Hex("00000200 0000 0000")));
    EXPECT_EQ(Fault::Misaligned, FaultOfPayload(&DecodeReadMem, Hex("00000200 0000 01fe")));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeReadMem, Hex("00000200 0000")));
    EXPECT_EQ(Fault::WrongLength,
              FaultOfPayload(&DecodeReadMem, Hex("00000200 0000 0004 00000000")));
}

TEST(GvcpCommandTest, WriteMem) {
    const CommandMessage message("420100860014000c000000e873746174696f6e203400000000000000");
    EXPECT_EQ(Code::WriteMemCmd, message.command.code);
    const auto memory = DecodeWriteMem(message.command);
    ASSERT_TRUE(memory);
    EXPECT_EQ(0xE8U, memory->address);
    ASSERT_EQ(16U, memory->data.size);
    EXPECT_EQ(0, memcmp("station 4\0\0\0\0\0\0", memory->data.data, 16));
    const Bytes data = Hex("73746174696f6e203400000000000000");
    EXPECT_EQ(message.bytes, Encoded([&](ByteSpan out) {
                  return EncodeWriteMemCmd(out, {12}, {0xE8, ViewOf(data)});
              }));

    EXPECT_EQ(std::nullopt, FaultOfPayload(&DecodeWriteMem, Bytes(540)));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeWriteMem, Bytes(544)));
    EXPECT_EQ(Fault::WrongCount, FaultOfPayload(&DecodeWriteMem, Bytes(4)));
    EXPECT_EQ(Fault::Misaligned, FaultOfPayload(&DecodeWriteMem, Bytes(6)));
    EXPECT_EQ(Fault::TooShort, FaultOfPayload(&DecodeWriteMem, Bytes(3)));
}

TEST(GvcpCommandTest, Action) {
    ExpectAction("42010100000c00111122334400000001ffffffff", 0x11, {0x11223344, 1, 0xFFFFFFFF, {}});
    ExpectAction("42810100001400121122334400000001ffffffff17979cfe362a0000", 0x12,
                 {0x11223344, 1, 0xFFFFFFFF, 1700000000000000000});

    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeAction, Bytes(20)));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeAction, Bytes(12), Flag::kScheduled));
    EXPECT_EQ(Fault::WrongLength, FaultOfPayload(&DecodeAction, Bytes(11)));
}

}  // namespace ZelCti::Gvcp
