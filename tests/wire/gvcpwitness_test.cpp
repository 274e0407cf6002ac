#include <gtest/gtest.h>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpcommands.h"
#include "producers/wire/gvcpevents.h"
#include "tests/wire/dissection.h"

using namespace ZelCti;
using namespace ZelCti::Gvcp;
using namespace WireTest;
using Gev::Status;

TEST(GvcpWitnessTest, Try) {
    Dissection d;
    const auto cmd = [&](auto e) { d.AddToDevice(50000, kPort, Encoded(e)); };
    const auto ack = [&](auto e) { d.AddFromDevice(50000, kPort, Encoded(e)); };
    cmd([](ByteSpan o) { return EncodeDiscoveryCmd(o, {1, 0x11}); });
    ack([](ByteSpan o) {
        return EncodeDiscoveryAck(
            o, 1, {2, 1, 0x80000001, 0x020304050607, 0xC0000007, 6, 0x0A4D0002, 0xFFFFFF00, 0x0A4D00FE, "Maker", "Model", "1.0", "made", "SN", "left"});
    });
    cmd([](ByteSpan o) { return EncodeForceIpCmd(o, {2}, {0x020304050607, 0x0A4D0002, 0xFFFFFF00, 0x0A4D00FE}); });
    ack([](ByteSpan o) { return EncodeAck(o, Status::Success, Code::ForceIpCmd, 2); });
    cmd([](ByteSpan o) { return EncodePacketResendCmd(o, {3, 0}, {false, 3, 77, 5, 0xFFFFFF}); });
    cmd([](ByteSpan o) { return EncodePacketResendCmd(o, {4, 0}, {true, 3, 0x1122334455667788, 5, 0xFFFFFFFE}); });
    const uint32_t addresses[] = {0xA00, 0x938, 0xC000};
    cmd([&](ByteSpan o) { return EncodeReadRegCmd(o, {5}, addresses, 3); });
    const uint32_t values[] = {2, 3000, 7};
    ack([&](ByteSpan o) { return EncodeReadRegAck(o, Status::Success, 5, values, 3); });
    const RegisterWrite writes[] = {{0xD18, 0x0A4D0001}, {0xD00, 54415}, {0xC004, 9}};
    cmd([&](ByteSpan o) { return EncodeWriteRegCmd(o, {6}, writes, 3); });
    ack([&](ByteSpan o) { return EncodeWriteRegAck(o, Status::WriteProtect, 6, 2); });
    cmd([](ByteSpan o) { return EncodeReadMemCmd(o, {7}, {0x200, 8}); });
    const Bytes data{'L', 'o', 'c', 'a', 'l', ':', 'x', 0};
    ack([&](ByteSpan o) { return EncodeReadMemAck(o, 7, {0x200, ViewOf(data)}); });
    cmd([&](ByteSpan o) { return EncodeReadMemCmd(o, {17}, {0xC000, 8}); });
    ack([&](ByteSpan o) { return EncodeReadMemAck(o, 17, {0xC000, ViewOf(data)}); });
    cmd([&](ByteSpan o) { return EncodeWriteMemCmd(o, {8}, {0xE8, ViewOf(data)}); });
    ack([&](ByteSpan o) { return EncodePendingAck(o, 8, 1500); });
    ack([&](ByteSpan o) { return EncodeWriteMemAck(o, Status::Success, 8, 8); });
    cmd([&](ByteSpan o) { return EncodeActionCmd(o, {9}, {0x11223344, 1, 0xFFFFFFFE, {}}); });
    ack([&](ByteSpan o) { return EncodeAck(o, Status::Success, Code::ActionCmd, 9); });
    cmd([&](ByteSpan o) { return EncodeActionCmd(o, {10}, {0x11223344, 1, 0xFFFFFFFE, 1700000000000000000}); });
    ack([&](ByteSpan o) { return EncodeAck(o, Status::ActionLate, Code::ActionCmd, 10); });
    const Event e[] = {{0x9001, 2, 77, 0x0102030405060708, ViewOf(data)}, {0x8001, 0, 0x1122334455667788, 5, ViewOf(data)}};
    ack([&](ByteSpan o) { return EncodeEventCmd(o, {11}, false, e, 2); });
    cmd([&](ByteSpan o) { return EncodeAck(o, Status::Success, Code::EventCmd, 11); });
    ack([&](ByteSpan o) { return EncodeEventCmd(o, {12}, true, e, 2); });
    ack([&](ByteSpan o) { return EncodeEventDataCmd(o, {13}, false, e, 1); });
    ack([&](ByteSpan o) { return EncodeEventDataCmd(o, {14}, true, e, 2); });
    ack([&](ByteSpan o) { return EncodeAck(o, Status::NotImplemented, Code(0x200), 15); });
    ack([&](ByteSpan o) { return EncodeAck(o, Status::Busy, Code::ReadMemCmd, 7); });
    for (const auto& p : d.Run("gvcp")) {
        printf("---\n");
        for (auto& [n, v] : p) printf("%s = %s\n", n.c_str(), v.c_str());
    }
}
