// Wireshark's dissector, which was written without us, reads what the encoders write: for each kind
// of message every field.

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpcommands.h"
#include "producers/wire/gvcpevents.h"
#include "tests/wire/dissection.h"

namespace ZelCti::Gvcp {

using namespace WireTest;
using Gev::Status;
using testing::UnorderedElementsAreArray;

namespace {

using Fields = Dissection::Fields;

// What tshark adds: which packet answers which, and that an acknowledge has no data.
bool IsNote(const std::string& field) {
    return field.rfind("gvcp.response_", 0) == 0 || field == "gvcp.cmd.payloaddata=";
}

std::string Hexadecimal(int digits, uint64_t value) {
    char text[32];
    std::snprintf(text, sizeof text, "0x%0*llx", digits, static_cast<unsigned long long>(value));
    return text;
}

// Fields of headers; their names lack the beginning "gvcp.", as all do in this file.
Fields CommandHeader(uint16_t code, uint8_t flags, uint16_t payloadSize, uint16_t id) {
    return {"message_key_code=0x42",
            "cmd.command=" + Hexadecimal(4, code),
            "cmd.flags=" + Hexadecimal(2, flags),
            "cmd.flag.acq_required=" + std::to_string(flags & 1),
            "cmd.payloadlength=" + Hexadecimal(4, payloadSize),
            "cmd.req_id=" + Hexadecimal(4, id)};
}

Fields AckHeader(uint16_t status, uint16_t code, uint16_t payloadSize, uint16_t id) {
    return {"cmd.status=" + Hexadecimal(4, status), "ack=" + Hexadecimal(4, code),
            "cmd.payloadlength=" + Hexadecimal(4, payloadSize), "cmd.req_id=" + Hexadecimal(4, id)};
}

}  // namespace

class GvcpWitnessTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!Dissection::IsPossible()) GTEST_SKIP() << "tshark is not installed (package tshark)";
    }

    // The message that `encode(ByteSpan)` writes has the fields of a header and these.
    template <typename Encode>
    void Expect(const Fields& header, const Fields& fields, const Encode& encode) {
        const Bytes message = Encoded(encode);
        constexpr uint16_t kApplicationPort = 50000;
        if (IsCommand(ViewOf(message))) {
            dissection_.AddToDevice(kApplicationPort, kPort, message);
        } else {
            dissection_.AddFromDevice(kApplicationPort, kPort, message);
        }
        Fields& expected = expected_.emplace_back();
        for (const Fields& part : {header, fields})
            for (const std::string& field : part)
                expected.push_back("gvcp." + field);
    }

    void Compare() const {
        const auto packets = dissection_.Run("gvcp");
        ASSERT_EQ(expected_.size(), packets.size());
        for (size_t i = 0; i < packets.size(); ++i) {
            Fields fields = packets[i];
            fields.erase(std::remove_if(fields.begin(), fields.end(), IsNote), fields.end());
            EXPECT_THAT(fields, UnorderedElementsAreArray(expected_[i])) << "packet " << i + 1;
        }
    }

  private:
    Dissection dissection_;
    std::vector<Fields> expected_;
};

TEST_F(GvcpWitnessTest, DeviceCommands) {
    Expect(CommandHeader(0x0002, 0x11, 0, 1), {"cmd.flag.allowbroadcastacq=1"}, [](ByteSpan out) {
        return EncodeDiscoveryCmd(out, {1, Flag::kAckRequired | Flag::kBroadcastAck});
    });
    Expect(AckHeader(0, 0x0003, 248, 1),
           {"bootstrap.specversion=0x00020001",
            "bootstrap.specversion.major=0x00000002",
            "bootstrap.specversion.minor=0x00000001",
            "ack.discovery.devicemode=0x80000001",
            "bootstrap.devicemode.endianness=1",
            "bootstrap.devicemode.deviceclass=0x00000000",
            "bootstrap.devicemode.currentlinkconfiguration=0x00000000",
            "bootstrap.devicemode.characterset=0x00000001",
            "cmd.discovery.devicemacaddress=02:03:04:05:06:07",
            "bootstrap.supportedipconfig=0xc0000007",
            "bootstrap.ipconfig.canhandlepauseframes=1",
            "bootstrap.ipconfig.cangeneratepauseframes=1",
            "bootstrap.ipconfig.lla=1",
            "bootstrap.ipconfig.dhcp=1",
            "bootstrap.ipconfig.persistentip=1",
            "bootstrap.currentipconfig=0x00000006",
            "bootstrap.ipconfig.canhandlepauseframes=0",
            "bootstrap.ipconfig.cangeneratepauseframes=0",
            "bootstrap.ipconfig.lla=1",
            "bootstrap.ipconfig.dhcp=1",
            "bootstrap.ipconfig.persistentip=0",
            "bootstrap.currentip=10.77.0.2",
            "bootstrap.currentsubnetmask=255.255.255.0",
            "bootstrap.currentdefaultgateway=10.77.0.254",
            "bootstrap.manufacturername=Maker",
            "bootstrap.modelname=Model",
            "bootstrap.deviceversion=1.0",
            "bootstrap.manufacturerspecificinfo=made here",
            "bootstrap.serialnumber=SN 7",
            "bootstrap.userdefinedname=left"},
           [](ByteSpan out) {
               return EncodeDiscoveryAck(
                   out, 1,
                   {2, 1, 0x80000001, 0x020304050607, 0xC0000007, 6, 0x0A4D0002, 0xFFFFFF00,
                    0x0A4D00FE, "Maker", "Model", "1.0", "made here", "SN 7", "left"});
           });
    Expect(
        CommandHeader(0x0004, 0x01, 56, 2),
        {"cmd.flag.allowbroadcastacq=0", "cmd.forceip.macaddress=02:03:04:05:06:07",
         "cmd.forceip.ip=10.77.0.2", "cmd.forceip.subnetmask=255.255.255.0",
         "cmd.forceip.defaultgateway=10.77.0.254"},
        [](ByteSpan out) {
            return EncodeForceIpCmd(out, {2}, {0x020304050607, 0x0A4D0002, 0xFFFFFF00, 0x0A4D00FE});
        });
    Expect(AckHeader(0, 0x0005, 0, 2), {},
           [](ByteSpan out) { return EncodeAck(out, Status::Success, Code::ForceIpCmd, 2); });
    Compare();
}

TEST_F(GvcpWitnessTest, ResendsAndActions) {
    Expect(
        CommandHeader(0x0040, 0x00, 12, 3),
        {"cmd.flag.64bitid=0", "cmd.resend.streamchannelindex=0x0003", "cmd.resend.blockid=0x004d",
         "cmd.resend.firstpacketid=0x000005", "cmd.resend.lastpacketid=0xfffffe"},
        [](ByteSpan out) {
            return EncodePacketResendCmd(out, {3, 0}, {false, 3, 77, 5, 0xFFFFFE});
        });
    Expect(
        CommandHeader(0x0040, 0x10, 20, 4),
        {"cmd.flag.64bitid=1", "cmd.resend.streamchannelindex=0x0003",
         "cmd.resend.extendedblockid=0x1122334455667788", "cmd.resend.firstpacketid=0x00000005",
         "cmd.resend.lastpacketid=0xfffffffe"},
        [](ByteSpan out) {
            return EncodePacketResendCmd(out, {4, 0}, {true, 3, 0x1122334455667788, 5, 0xFFFFFFFE});
        });
    Expect(CommandHeader(0x0100, 0x01, 12, 5),
           {"cmd.flag.scheduledactioncommand=0", "cmd.action.devicekey=0x11223344",
            "cmd.action.groupkey=0x00000001", "cmd.action.groupmask=0xfffffffe"},
           [](ByteSpan out) {
               return EncodeActionCmd(out, {5}, {0x11223344, 1, 0xFFFFFFFE, {}});
           });
    Expect(AckHeader(0, 0x0101, 0, 5), {},
           [](ByteSpan out) { return EncodeAck(out, Status::Success, Code::ActionCmd, 5); });
    Expect(CommandHeader(0x0100, 0x81, 20, 6),
           {"cmd.flag.scheduledactioncommand=1", "cmd.action.devicekey=0x11223344",
            "cmd.action.groupkey=0x00000001", "cmd.action.groupmask=0xfffffffe",
            "cmd.action.time=0x17979cfe362a0000"},
           [](ByteSpan out) {
               return EncodeActionCmd(out, {6}, {0x11223344, 1, 0xFFFFFFFE, 0x17979CFE362A0000});
           });
    Expect(AckHeader(0x8016, 0x0101, 0, 6), {},
           [](ByteSpan out) { return EncodeAck(out, Status::ActionLate, Code::ActionCmd, 6); });
    Compare();
}

TEST_F(GvcpWitnessTest, RegistersAndMemory) {
    const uint32_t addresses[] = {0x0A00, 0x0938, 0xC000};
    const uint32_t values[] = {2, 3000, 7};
    const RegisterWrite writes[] = {{0x0D18, 0x0A4D0001}, {0x0D00, 54415}, {0xC004, 9}};
    const Bytes data{'l', 'e', 'f', 't', ' ', '4', 0, 0};

    Expect(CommandHeader(0x0080, 0x01, 12, 7),
           {"cmd.readreg.bootstrapregister=0x00000a00", "cmd.readreg.bootstrapregister=0x00000938",
            "bootstrap.custom.register.write=0x0000c000"},
           [&](ByteSpan out) { return EncodeReadRegCmd(out, {7}, addresses, 3); });
    Expect(AckHeader(0, 0x0081, 12, 7),
           {"cmd.readreg.bootstrapregister=0x00000a00", "cmd.readreg.bootstrapregister=0x00000938",
            "bootstrap.custom.register.read=0x0000c000",
            "bootstrap.control.switchoverkey=0x00000000", "bootstrap.control.switchoverenable=0",
            "bootstrap.control.controlaccess=1", "bootstrap.control.exclusiveaccess=0",
            "bootstrap.heartbeattimeout=3000", "bootstrap.custom.register.read_value=0x00000007"},
           [&](ByteSpan out) { return EncodeReadRegAck(out, Status::Success, 7, values, 3); });
    Expect(CommandHeader(0x0082, 0x01, 24, 8),
           {"cmd.writereg.bootstrapregister=0x00000d18", "bootstrap.scdax=10.77.0.1",
            "cmd.writereg.bootstrapregister=0x00000d00", "bootstrap.scpx.direction=0",
            "bootstrap.scpx.networkinterfaceindex=0", "bootstrap.scpx.hostport=54415",
            "bootstrap.custom.register.write=0x0000c004",
            "bootstrap.custom.register.value=0x00000009"},
           [&](ByteSpan out) { return EncodeWriteRegCmd(out, {8}, writes, 3); });
    Expect(AckHeader(0x8004, 0x0083, 4, 8), {"cmd.writereg.dataindex=0x0002"},
           [](ByteSpan out) { return EncodeWriteRegAck(out, Status::WriteProtect, 8, 2); });
    Expect(CommandHeader(0x0084, 0x01, 8, 9),
           {"bootstrap.custom.register.write=0x0000c000", "cmd.readmem.count=0x0008"},
           [](ByteSpan out) {
               return EncodeReadMemCmd(out, {9}, {0xC000, 8});
           });
    Expect(AckHeader(0, 0x0085, 12, 9),
           {"cmd.readmem.address=0x0000c000", "cmd.readmem.data=6c:65:66:74:20:34:00:00"},
           [&](ByteSpan out) {
               return EncodeReadMemAck(out, 9, {0xC000, ViewOf(data)});
           });
    Expect(CommandHeader(0x0086, 0x01, 12, 10), {"cmd.writemem.data=6c:65:66:74:20:34:00:00"},
           [&](ByteSpan out) {
               return EncodeWriteMemCmd(out, {10}, {0xC000, ViewOf(data)});
           });
    Expect(AckHeader(0, 0x0089, 4, 10), {"ack.pendingack.timetocompletion=0x05dc"},
           [](ByteSpan out) { return EncodePendingAck(out, 10, 1500); });
    Expect(AckHeader(0, 0x0087, 4, 10), {"cmd.writemem.dataindex=0x0008"},
           [](ByteSpan out) { return EncodeWriteMemAck(out, Status::Success, 10, 8); });
    Expect(AckHeader(0x8007, 0x0085, 0, 11), {},
           [](ByteSpan out) { return EncodeAck(out, Status::Busy, Code::ReadMemCmd, 11); });
    Compare();
}

TEST_F(GvcpWitnessTest, Events) {
    const Bytes data{'l', 'e', 'f', 't'};
    const Event events[] = {{0x9001, 2, 77, 0x0102030405060708, ViewOf(data)},
                            {0x8001, kNoStreamChannel, 0x1122334455667788, 5, ViewOf(data)}};
    const Fields common{
        "cmd.event.devicespecificid=0x9001",      "cmd.event.errorid=0x8001",
        "cmd.event.streamchannelindex=0x0002",    "cmd.event.streamchannelindex=0xffff",
        "cmd.event.timestamp=0x0102030405060708", "cmd.event.timestamp=0x0000000000000005"};
    // tshark calls a block id of 64 bits so.
    const Fields extended{"cmd.flag.64bitid=1", "event_timestamp=0x000000000000004d",
                          "event_timestamp=0x1122334455667788"};
    const auto both = [&common](Fields fields) {
        fields.insert(fields.end(), common.begin(), common.end());
        return fields;
    };

    Expect(CommandHeader(0x00C0, 0x01, 32, 12),
           both({"cmd.flag.64bitid=0", "cmd.event.blockid=0x004d", "cmd.event.blockid=0x7788"}),
           [&](ByteSpan out) { return EncodeEventCmd(out, {12}, false, events, 2); });
    Expect(AckHeader(0, 0x00C1, 0, 12), {},
           [](ByteSpan out) { return EncodeAck(out, Status::Success, Code::EventCmd, 12); });
    Expect(CommandHeader(0x00C0, 0x11, 48, 13), both(extended),
           [&](ByteSpan out) { return EncodeEventCmd(out, {13}, true, events, 2); });
    Expect(CommandHeader(0x00C2, 0x00, 20, 14),
           {"cmd.flag.64bitid=0", "cmd.event.devicespecificid=0x9001",
            "cmd.event.streamchannelindex=0x0002", "cmd.event.blockid=0x004d",
            "cmd.event.timestamp=0x0102030405060708", "cmd.eventdata.data=6c:65:66:74"},
           [&](ByteSpan out) {
               return EncodeEventDataCmd(out, {14, 0}, false, events, 1);
           });
    Fields withData = both(extended);
    for (const char* const field : {"cmd.event.eventsize=0x001c", "cmd.eventdata.data=6c:65:66:74"})
        withData.insert(withData.end(), 2, field);
    Expect(CommandHeader(0x00C2, 0x11, 56, 15), withData,
           [&](ByteSpan out) { return EncodeEventDataCmd(out, {15}, true, events, 2); });
    Expect(AckHeader(0, 0x00C3, 0, 15), {},
           [](ByteSpan out) { return EncodeAck(out, Status::Success, Code::EventDataCmd, 15); });
    Compare();
}

}  // namespace ZelCti::Gvcp
