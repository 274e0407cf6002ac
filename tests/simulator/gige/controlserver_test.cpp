// Commands to a served camera and its answers, as literal bytes.
#include "producers/simulator/gige/control/controlserver.h"

#include <gmock/gmock.h>

#include "tests/simulator/gige/controlledcamera.h"

using GigeTest::ControlledCamera;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr auto kHost = ControlledCamera::kHost;

struct ControlServerTest : testing::Test, ControlledCamera {};

// The value of a register, as the host reads it.
std::string Read(ControlledCamera& camera, const std::string& address) {
    static uint16_t id = 0x7000;
    const std::string number =
        ControlledCamera::Digits({static_cast<uint8_t>(++id >> 8), static_cast<uint8_t>(id)});
    const std::string answer = camera.Ask("420100800004" + number + address);
    return answer.substr(0, 4) == "0000" ? answer.substr(16) : answer.substr(0, 4);
}

// The status of a write.
std::string Write(ControlledCamera& camera, const std::string& address, const std::string& value,
                  const ZelCti::Endpoint& from = kHost) {
    static uint16_t id = 0x1000;
    const std::string number =
        ControlledCamera::Digits({static_cast<uint8_t>(++id >> 8), static_cast<uint8_t>(id)});
    return camera.Ask("420100820008" + number + address + value, from).substr(0, 4);
}

// ---- Discovery and addresses --------------------------------------------------------------------

const std::string kDiscoveryAck =
    "0000000300f80001"
    "00020001"          // 2.1
    "80000001"          // big endian, UTF-8
    "0000020000000002"  // MAC
    "00000007000000040000000000000000000000007f000002"
    "000000000000000000000000ff000000"
    "00000000000000000000000000000000"
    "5665726966790000000000000000000000000000000000000000000000000000"
    "4465766963650000000000000000000000000000000000000000000000000000"
    "312e302e30000000000000000000000000000000000000000000000000000000"
    "73696d756c617465640000000000000000000000000000000000000000000000"
    "00000000000000000000000000000000"
    "30383135000000000000000000000000"
    "6c656674000000000000000000000000";

TEST_F(ControlServerTest, DiscoveryShowsTheBootstrapRegisters) {
    EXPECT_EQ(Ask("4201000200000001"), kDiscoveryAck);
    Handle("4201000200000001", kOther, true);
    EXPECT_EQ(TakeSent(kOther), kDiscoveryAck) << "by broadcast, from the same subnet";
    EXPECT_EQ(Ask("4201000200040001 00000000"), "") << "with a payload";
}

TEST_F(ControlServerTest, DiscoveryOfAnotherSubnetNeedsABroadcastAnswer) {
    const ZelCti::Endpoint far{0x0A4D0001, 50000};
    Handle("4201000200000001", far, true);
    EXPECT_THAT(sent, IsEmpty());
    Handle("4211000200000001", far, true);
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(sent[0].to, (ZelCti::Endpoint{0xFFFFFFFF, 50000}));
    sent.clear();
    EXPECT_EQ(Ask("4201000200000001", far), kDiscoveryAck) << "unicast passes routers";
}

TEST_F(ControlServerTest, BroadcastDiscoveryIsAnsweredWithinTheDelay) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00000950", "00000190"), "0000");  // 400 ms
    EXPECT_EQ(Write(*this, "00000950", "000003e9"), "8002") << "at most a second";
    Handle("4201000200000001", kOther, true);
    EXPECT_THAT(sent, IsEmpty());
    const auto deadline = server->NextDeadline(now);
    ASSERT_TRUE(deadline);
    EXPECT_LE(*deadline, now + std::chrono::milliseconds(400));
    Pass(400);
    EXPECT_EQ(TakeSent(kOther), kDiscoveryAck);
}

TEST_F(ControlServerTest, ForceIpSetsTheAddressOfTheDeviceMeant) {
    const std::string others =
        "000000000000000000000000"
        "0a4d0002"
        "000000000000000000000000"
        "ffffff00"
        "000000000000000000000000"
        "00000000";
    EXPECT_EQ(Ask("420100040038001f"
                  "0000020000000003" +
                  others),
              "")
        << "another MAC";
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
    Handle(
        "421100040038001f"
        "0000020000000002" +
            others,
        kHost, true);
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("force ip 172818434"));
    ASSERT_EQ(sent.size(), 1U);
    EXPECT_EQ(Digits(sent[0].bytes), "000000050000001f");
    EXPECT_EQ(sent[0].to, (ZelCti::Endpoint{0xFFFFFFFF, 50000}));
    sent.clear();
    EXPECT_EQ(Read(*this, "00000024"), "0a4d0002");
    TakeControl();
    Handle(
        "421100040038001f"
        "0000020000000002" +
            others,
        kOther, true);
    EXPECT_THAT(sent, IsEmpty()) << "a camera that is controlled keeps its address";
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
}

// ---- Registers ----------------------------------------------------------------------------------

TEST_F(ControlServerTest, RegistersAreReadAndWrittenTogether) {
    EXPECT_EQ(Ask("4201008200080f36 00000a00 00000002"), "0000008300040f3600000001");
    EXPECT_EQ(Ask("4201008000100f37 00000a00 00000938 00000934 00000958"),
              "0000008100100f3700000002"
              "00000bb8"
              "fdfe007f"
              "000000c8");
    EXPECT_EQ(Ask("4201008200180005 00000938 00000bb9 00000d08 00000000 00000048 00000001"),
              "800400830004000500000002")
        << "the third is write-protected, two were written";
    EXPECT_EQ(Read(*this, "00000938"), "00000bb9");
    EXPECT_EQ(Ask("42010080000c0006 00000000 00000003 00000004"), "800500810004000600020001")
        << "what was read before the error";
}

TEST_F(ControlServerTest, MemoryIsReadAndWritten) {
    TakeControl();
    EXPECT_EQ(Ask("420100860014000c 000000e8 73746174696f6e203400000000000000"),
              "000000870004000c00000010");
    EXPECT_EQ(camera->Hardware().UserName(), "station 4");
    EXPECT_EQ(Ask("420100840008000d 000000e8 00000010"),
              "000000850014000d000000e873746174696f6e203400000000000000");
    EXPECT_EQ(Ask("420100860008000e 00012110 00000140"), "000000870004000e00000004") << "Width";
    EXPECT_EQ(Read(*this, "00012110"), "00000140");
}

TEST_F(ControlServerTest, DescriptionIsReadWhereItsUrlSays) {
    const std::string url = Ask("4201008400080001 00000200 00000200").substr(24);
    std::string text;
    for (size_t i = 0; url.substr(i, 2) != "00"; i += 2)
        text += static_cast<char>(std::stoi(url.substr(i, 2), nullptr, 16));
    EXPECT_THAT(text, testing::MatchesRegex("Local:Device.xml;80000000;[0-9A-F]+"));
    const std::string end = text.substr(text.rfind(';') + 1);
    EXPECT_EQ(Ask("4201008400080002 80000000 00000008"),
              "00000085000c0002800000003c3f786d6c207665");  // <?xml ve
    EXPECT_EQ(Write(*this, "80000000", "00000000"), "8006");
    TakeControl();
    EXPECT_EQ(Write(*this, "80000000", "00000000"), "8004");
    EXPECT_EQ(Read(*this, "8ff00000"), "8003");
    EXPECT_GT(std::stoul(end, nullptr, 16), 10000U);
}

TEST_F(ControlServerTest, ChecksComeInTheirOrder) {
    const std::string readOnly = "00000048";
    EXPECT_EQ(Ask("420102000000000e"), "800102010000000e") << "unknown command";
    EXPECT_EQ(Ask("4201008200060001 00000a00 0000"), "800200830004000100000000");
    EXPECT_EQ(Write(*this, "00000003", "00000000"), "8006") << "privilege before alignment";
    TakeControl();
    EXPECT_EQ(Write(*this, "00000003", "00000000"), "8005") << "alignment before address";
    EXPECT_EQ(Write(*this, "00000060", "00000000"), "8004") << "address before access";
    EXPECT_EQ(Write(*this, readOnly, "00000000"), "8004");
    EXPECT_EQ(Ask("4201008600080009 00000048 00000000"), "800400870004000900000000");
    EXPECT_EQ(Write(*this, "00000960", "00000001"), "8002") << "the value is last";
    EXPECT_EQ(Write(*this, "00000100", "00000000"), "8003");
    EXPECT_EQ(Read(*this, "00000020"), "8003") << "reserved";
    EXPECT_EQ(Read(*this, "0000090c"), "8006") << "write-only";
    EXPECT_EQ(Ask("420100840008000a 00000200 000001fe"), "800500850000000a");
    EXPECT_EQ(Ask("420100840008000b 00000200 0000021c"), "800200850000000b") << "540 bytes";
    EXPECT_EQ(Ask("42010084000c000b 00000200 00000200 00000000"), "800200850000000b");
    EXPECT_EQ(Ask("4201008400080010 00000100 00000100"), "8003008500000010") << "no register";
}

TEST_F(ControlServerTest, MalformedDatagramsGetNoAnswer) {
    for (const char* const digits :
         {"", "42", "4201008000040001", "420100800004000100000a0000", "420100800004000000000a00",
          "430100800004000100000a00", "0000008100040001 00000002"})
        EXPECT_EQ(Ask(digits), "") << digits;
    Handle("420100800004000100000a00", kHost, true);
    EXPECT_EQ(TakeSent(), "") << "registers are not for broadcasts";
    Handle(
        "42010082"
        "0008"
        "0001"
        "00000a00"
        "00000002",
        kHost, true);
    EXPECT_EQ(Read(*this, "00000a00"), "00000000");
}

TEST_F(ControlServerTest, WritesWithoutTheFlagAreDoneSilently) {
    TakeControl();
    EXPECT_EQ(Ask("4200008200080001 00000938 00001000"), "");
    EXPECT_EQ(Ask("4200008000040002 00000938"), "000000810004000200001000") << "reads answer";
}

TEST_F(ControlServerTest, LockedSettingsAreDenied) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00000d00", "00001234"), "0000");
    ASSERT_EQ(Write(*this, "00012608", "00000001"), "0000") << "TLParamsLocked";
    EXPECT_EQ(Write(*this, "00012110", "00000140"), "8006") << "Width";
    EXPECT_EQ(Write(*this, "00000d04", "00000240"), "8006") << "packet size";
    EXPECT_EQ(Write(*this, "00000d18", "7f000001"), "8006") << "destination";
    EXPECT_EQ(Write(*this, "00000d00", "00001235"), "8006") << "another port";
    EXPECT_EQ(Write(*this, "00000d08", "00000064"), "0000") << "delay";
    EXPECT_EQ(Write(*this, "00000d00", "00000000"), "0000") << "to close is always allowed";
}

// ---- Privilege and heartbeat --------------------------------------------------------------------

TEST_F(ControlServerTest, ControlLetsOthersReadOnly) {
    TakeControl();
    EXPECT_EQ(Ask("4201008200080006 00000a00 00000002", kOther), "800600830004000600000000");
    EXPECT_EQ(Write(*this, "00000938", "00001000", kOther), "8006");
    EXPECT_EQ(Ask("420100800004000700000a00", kOther), "000000810004000700000002");
    EXPECT_EQ(Read(*this, "00000a04"), "0000c350") << "port of the primary application";
    EXPECT_EQ(Read(*this, "00000a14"), "7f000001");
    EXPECT_EQ(Write(*this, "00000a00", "00000001"), "0000") << "exclusive";
    EXPECT_EQ(Ask("420100800004000800000a00", kOther), "8006008100000008");
    EXPECT_EQ(Ask("4201008400080009 00000200 00000010", kOther), "8006008500000009");
    EXPECT_THAT(Ask("420100020000000a", kOther), StartsWith("0000000300f8000a"));
    EXPECT_EQ(Write(*this, "00000a00", "00000008"), "8002");
    EXPECT_EQ(Read(*this, "00000a00"), "00000001");
}

TEST_F(ControlServerTest, SwitchoverNeedsItsPermissionAndItsKey) {
    TakeControl();
    ASSERT_EQ(Write(*this, "0000095c", "00001234"), "0000");
    EXPECT_EQ(Write(*this, "00000a00", "12340002", kOther), "8006") << "not allowed yet";
    ASSERT_EQ(Write(*this, "00000a00", "00000006"), "0000");
    EXPECT_EQ(Write(*this, "00000a00", "12350002", kOther), "8006") << "wrong key";
    EXPECT_THAT(hardware.TakeNotes(), Not(Contains("event 7")));
    EXPECT_EQ(Write(*this, "00000a00", "12340002", kOther), "0000");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("event 7")) << "and nothing is closed";
    EXPECT_EQ(Write(*this, "00000938", "00001000"), "8006") << "the old one has lost it";
    EXPECT_EQ(Read(*this, "00000a04"), "0000c351");
}

TEST_F(ControlServerTest, EndOfHeartbeatFreesTheCamera) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00000938", "00000001"), "0000");
    EXPECT_EQ(Read(*this, "00000938"), "000001f4") << "at least 500 ms";
    ASSERT_EQ(Write(*this, "00000b00", "00004321"), "0000");
    ASSERT_EQ(Write(*this, "00000d00", "00001234"), "0000");
    ASSERT_EQ(Write(*this, "00000d40", "00001235"), "0000");
    ASSERT_EQ(Write(*this, "00000d64", "00000002"), "0000") << "unconditional";
    hardware.TakeNotes();
    ASSERT_EQ(Write(*this, "00000954", "00000006"), "0000");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("status codes 1"));
    Pass(300);
    EXPECT_EQ(Read(*this, "00000a00"), "00000002");
    Pass(300);
    Ask("420100800004000700000a00", kOther);                 // somebody else's is no heartbeat
    Handle("42000040000c0008 0000 0001 00000001 00000002");  // nor is a resend request
    EXPECT_EQ(server->NextDeadline(now), now + Milliseconds(200));
    hardware.TakeNotes();
    Pass(200);
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("status codes 0", "message port 0", "port 0 0"));
    EXPECT_EQ(Read(*this, "00000a00"), "00000000");
    EXPECT_EQ(Read(*this, "00000d00"), "00000000");
    EXPECT_EQ(Read(*this, "00000d40"), "00001235") << "streams unconditionally";
    EXPECT_EQ(Read(*this, "00000954"), "00000000");
    EXPECT_EQ(Read(*this, "00000938"), "000001f4") << "settings stay";
    EXPECT_EQ(server->NextDeadline(now), std::nullopt);
}

TEST_F(ControlServerTest, EndOfHeartbeatUnlocksSettings) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00012608", "00000001"), "0000");
    Pass(3000);
    EXPECT_FALSE(camera->Hardware().Control().IsLockedByClient());
}

TEST_F(ControlServerTest, HeartbeatCanBeSwitchedOff) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00000954", "00000001"), "0000");
    Pass(3600000);
    EXPECT_EQ(Read(*this, "00000a00"), "00000002");
    ASSERT_EQ(Write(*this, "00000a00", "00000000"), "0000");
    EXPECT_EQ(Read(*this, "00000954"), "00000000") << "release ends all as well";
}

// ---- Answers ------------------------------------------------------------------------------------

TEST_F(ControlServerTest, RepeatedCommandsAreDoneOnceAndAnsweredEachTime) {
    TakeControl();
    const char* const write = "4201008200080042 00000944 00000001";  // reset of the timestamp
    EXPECT_EQ(Ask(write), "000000830004004200000001");
    EXPECT_EQ(Ask(write), "000000830004004200000001");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("timestamp 0"));
    EXPECT_EQ(Ask("4201008200080043 00000944 00000001"), "000000830004004300000001");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("timestamp 0"));
    EXPECT_EQ(Ask(write, kOther), "800600830004004200000000") << "somebody else's number";
    EXPECT_EQ(Ask("4201008000040043 00000938"), "000000810004004300000bb8") << "another command";
}

TEST_F(ControlServerTest, CommandsOfAnEndedControlAreForgotten) {
    const char* const write = "4201008200080042 00000938 00001000";
    TakeControl();
    EXPECT_EQ(Ask(write), "000000830004004200000001");
    Pass(0x1000);
    EXPECT_EQ(Ask(write), "800600830004004200000000") << "the heartbeat ended";
    ASSERT_EQ(Write(*this, "00000a00", "00000006"), "0000");
    EXPECT_EQ(Ask(write), "000000830004004200000001");
    ASSERT_EQ(Write(*this, "00000a00", "00000002", kOther), "0000") << "the key is 0";
    EXPECT_EQ(Ask(write), "800600830004004200000000") << "taken over";
}

TEST_F(ControlServerTest, LateAnswersComeAtTheirTimes) {
    hardware.settings.delayAckMs = 100;
    EXPECT_EQ(Ask("4201008000040001 00000a00"), "");
    hardware.settings.delayAckMs = 50;
    EXPECT_EQ(Ask("4201008000040002 00000938"), "");
    EXPECT_EQ(Ask("4201008000040003 00000a00"), "");
    Pass(100);
    EXPECT_EQ(TakeSent(),
              "000000810004000200000bb8, 000000810004000300000000, 000000810004000100000000");
}

TEST_F(ControlServerTest, RepeatedReadsReadAgain) {
    EXPECT_EQ(Ask("4201008000040042 00000a00"), "000000810004004200000000");
    ASSERT_EQ(Write(*this, "00000a00", "00000002", kOther), "0000");
    EXPECT_EQ(Ask("4201008000040042 00000a00"), "000000810004004200000002");
}

TEST_F(ControlServerTest, SlowRegistersAnnounceTheirAnswer) {
    TakeControl();
    const char* const save = "420100820008000f 00012524 00000001";  // UserSetSave of UserSet0
    EXPECT_EQ(Ask(save), "000000830004000f00000001") << "PENDING_ACK is not wanted";
    ASSERT_EQ(Write(*this, "00000954", "00000002"), "0000");
    EXPECT_EQ(Ask("4201008200080010 00012524 00000001"), "00000089000400100000012c");
    now += Milliseconds(100);
    EXPECT_EQ(Ask("4201008200080010 00012524 00000001"), "0000008900040010000000c8") << "again";
    Pass(199);
    EXPECT_EQ(TakeSent(), "");
    Pass(1);
    EXPECT_EQ(TakeSent(), "000000830004001000000001");
    EXPECT_EQ(Ask("4201008200080010 00012524 00000001"), "000000830004001000000001") << "stored";
}

TEST(SlowFlashTest, EraseAnnouncesItsAnswerAndAPollDoesNot) {
    ControlledCamera camera([](ZelSim::CameraConfig& config) { config.flashBusyTime = 60000; });
    camera.TakeControl();
    ASSERT_EQ(Write(camera, "00000954", "00000002"), "0000");
    EXPECT_EQ(camera.Ask("4201008200080001 20006050 00004001"),
              "0000008900040001"
              "0000ea60");
    EXPECT_EQ(camera.Ask("4201008200080002 20006050 00000006"), "000000830004000200000001");
    camera.Pass(59999);
    EXPECT_EQ(camera.TakeSent(), "");
    camera.Pass(1);
    EXPECT_EQ(camera.TakeSent(), "000000830004000100000001");
}

TEST(SlowFlashTest, IsBusyMeanwhile) {
    ControlledCamera camera([](ZelSim::CameraConfig& config) { config.flashBusyTime = 60000; });
    camera.TakeControl();
    const auto erase = [&] { return Write(camera, "20006050", "00004001"); };
    EXPECT_EQ(erase(), "0000");
    EXPECT_EQ(erase(), "8007");
    EXPECT_EQ(Write(camera, "20006050", "000000ff"), "8007");
}

TEST_F(ControlServerTest, TestPacketsComeAfterTheAnswer) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00000d18", "7f000001"), "0000");
    ASSERT_EQ(Write(*this, "00000d04", "c0000240"), "0000");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("destination 0 2130706433"))
        << "none while the channel is closed";
    ASSERT_EQ(Write(*this, "00000d00", "00001234"), "0000");
    hardware.TakeNotes();
    EXPECT_EQ(Ask("4201008200080016 00000d04 c0000242"), "000000830004001600000001");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("test packet 0"));
    EXPECT_EQ(Read(*this, "00000d04"), "40000240") << "what the device has made of it";
    hardware.settings.delayAckMs = 50;
    EXPECT_EQ(Ask("4201008200080017 00000d04 c0000240"), "");
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
    Pass(50);
    EXPECT_EQ(TakeSent(), "000000830004001700000001");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("test packet 0"));
}

TEST_F(ControlServerTest, ResendRequestsOfAnyoneArePassedOn) {
    ASSERT_EQ(Write(*this, "00000a00", "00000001"), "0000");
    Handle("42000040000cff15 0000ffff 00000002 00000003", kOther);
    EXPECT_THAT(hardware.TakeNotes(), Contains("resend 0 65535 50001"));
    EXPECT_EQ(Ask("42010040000cff16 0000ffff 00000004 00000003"), "800200410000ff16");
    EXPECT_EQ(TakeSent(), "");
    hardware.settings.gvcpCapabilitiesOff = 0x4;
    EXPECT_EQ(Ask("42010040000cff17 0000ffff 00000002 00000003"), "800100410000ff17");
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
}

// ---- Actions ------------------------------------------------------------------------------------

class ActionTest : public ControlServerTest {
  protected:
    ActionTest() {
        TakeControl();
        Write(*this, "0000090c", "11223344");
        Write(*this, "00009810", "00000001");
        Write(*this, "00009814", "00000006");
        Write(*this, "00009830", "00000001");
        Write(*this, "00009834", "00000004");
    }

    // A command at so many ms from now; ticks of the camera are nanoseconds.
    std::string ScheduleIn(int64_t milliseconds, const std::string& id) {
        const uint64_t time = camera->Hardware().NanosecondsAt(now + Milliseconds(milliseconds));
        GigeTest::Bytes bytes;
        for (int shift = 56; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<uint8_t>(time >> shift));
        return Ask("428101000014" + id + "112233440000000100000002" + Digits(bytes), kOther);
    }
};

TEST_F(ActionTest, KeysDecideWhoActs) {
    EXPECT_EQ(Ask("42010100000c0011 11223344 00000001 ffffffff", kOther), "0000010100000011");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("act 1", "act 3"));
    EXPECT_EQ(Ask("42010100000c0012 11223344 00000001 00000002", kOther), "0000010100000012");
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("act 1"));
    EXPECT_EQ(Ask("42010100000c0013 11223345 00000001 ffffffff"), "") << "device key";
    EXPECT_EQ(Ask("42010100000c0014 11223344 00000002 ffffffff"), "") << "group key";
    EXPECT_EQ(Ask("42010100000c0015 11223344 00000001 00000008"), "") << "group mask";
    Handle("42000100000c0016 11223344 00000001 00000002", kOther, true);
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("act 1"));
    EXPECT_THAT(sent, IsEmpty());
    Pass(3000);
    hardware.TakeNotes();
    EXPECT_EQ(Ask("42010100000c0017 11223344 00000001 ffffffff"), "") << "nobody has control";
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
}

TEST_F(ActionTest, ScheduledOnesWaitForTheirTime) {
    Write(*this, "00000954", "00040000");
    hardware.TakeNotes();
    EXPECT_EQ(ScheduleIn(20, "0020"), "0000010100000020");
    EXPECT_EQ(ScheduleIn(10, "0021"), "0000010100000021");
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
    const auto deadline = server->NextDeadline(now);
    ASSERT_TRUE(deadline);
    EXPECT_GE(*deadline, now + Milliseconds(10));
    EXPECT_LT(*deadline, now + Milliseconds(11));
    now = *deadline;
    server->OnTimer(now);
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("act 1"));
    Pass(20);
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("act 1"));
    EXPECT_EQ(ScheduleIn(-1, "0022"), "8016010100000022") << "late";
    EXPECT_THAT(hardware.TakeNotes(), ElementsAre("event 9"));
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(ScheduleIn(10, "003" + std::to_string(i)).substr(0, 4), "0000");
    EXPECT_EQ(ScheduleIn(10, "0038"), "8015010100000038") << "no place";
    Write(*this, "00000954", "00000000");
    EXPECT_EQ(ScheduleIn(10, "0039"), "8fff010100000039") << "without the status codes of 2.0";
    hardware.settings.tickFrequencyZero = true;
    Write(*this, "00000954", "00040000");
    EXPECT_EQ(ScheduleIn(10, "003a"), "801301010000003a") << "no time to refer to";
}

TEST_F(ActionTest, ScheduledOnesEndWithTheControl) {
    EXPECT_EQ(ScheduleIn(10, "0020"), "0000010100000020");
    Write(*this, "00000a00", "00000000");
    hardware.TakeNotes();
    Pass(20);
    EXPECT_THAT(hardware.TakeNotes(), IsEmpty());
}

// ---- Switches -----------------------------------------------------------------------------------

TEST_F(ControlServerTest, AcknowledgesGetLostDoubledAndWrongNumbers) {
    const auto ask = [&](const char* id) {
        return Ask(std::string("420100800004") + id + "00000a00");
    };
    hardware.settings.dropAckEvery = 2;
    EXPECT_NE(ask("0001"), "");
    EXPECT_EQ(ask("0002"), "");
    hardware.settings.dropAckEvery = 0;
    hardware.settings.doubleAckEvery = 3;
    EXPECT_EQ(ask("0003"), "000000810004000300000000, 000000810004000300000000");
    hardware.settings.wrongAckIdEvery = 1;
    EXPECT_EQ(ask("ffff"), "000000810004800000000000");
    hardware.settings.wrongAckIdEvery = 0;
    hardware.settings.doubleAckEvery = 0;
    hardware.settings.errorAddress = 0xA00;
    hardware.settings.errorStatus = 0x8123;
    EXPECT_EQ(ask("0005"), "8123008100000005");
    EXPECT_EQ(Ask("4201008200080006 00000a04 00000000"), "800600830004000600000000");
    hardware.settings.zeroLengthErrors = true;
    EXPECT_EQ(Ask("4201008200080007 00000a04 00000000"), "8006008300000007");
    hardware.settings.heartbeatSilence = true;
    EXPECT_EQ(ask("0007"), "");
    EXPECT_THAT(Ask("4201000200000008"), StartsWith("00000003"));
}

TEST_F(ControlServerTest, EveryAccessCanTakeTime) {
    TakeControl();
    ASSERT_EQ(Write(*this, "00000954", "00000002"), "0000");
    hardware.settings.pendingAckMs = 5000;
    hardware.settings.lateAckAfterSlow = true;
    EXPECT_EQ(Ask("4201008000040006 00000a00"), "000000890004000600001388, 0000008100000005");
    Pass(4999);
    EXPECT_EQ(TakeSent(), "") << "and the heartbeat waits as well";
    Pass(1);
    EXPECT_EQ(TakeSent(), "000000810004000600000002");
    EXPECT_EQ(privilege.Value(), 2U);
}

TEST_F(ControlServerTest, RegistersAreMissingWithoutTheirCapability) {
    TakeControl();
    EXPECT_EQ(Read(*this, "000000d8"), "30383135");
    hardware.settings.gvcpCapabilitiesOff =
        0x48000003;  // serial, primary application, WRITEMEM, one
    EXPECT_EQ(Read(*this, "000000d8"), "8003");
    EXPECT_EQ(Read(*this, "00000a04"), "8003");
    EXPECT_EQ(Read(*this, "00000934"), "b5fe007c");
    EXPECT_EQ(Ask("4201008600080001 000000e8 73000000"), "800100870004000100000000");
    EXPECT_EQ(Ask("4201008000080002 00000a00 00000a00"), "8002008100000002");
    EXPECT_EQ(Ask("4201000200000003").substr(16 + 2 * 0xD8, 8), "00000000");
}

TEST_F(ControlServerTest, ReadsCanBeOddOrRefused) {
    hardware.settings.refuseOddReads = false;
    EXPECT_EQ(Ask("4201008400080001 00000048 00000003"), "000000850007000100000048566572");
    hardware.settings.refuseReadMem = true;
    EXPECT_EQ(Ask("4201008400080002 00000a00 00000004"), "8003008500000002");
    EXPECT_EQ(Ask("4201008400080003 00000048 00000004"), "00000085000800030000004856657269");
    EXPECT_EQ(Ask("4201008400080004 00012268 00000008").size(), 40U) << "ResultingFrameRate";
    hardware.settings.badAlignmentOnce = true;
    EXPECT_EQ(Write(*this, "00000a00", "00000002"), "0000");
    EXPECT_EQ(Read(*this, "00000a00"), "8005");
    EXPECT_EQ(Read(*this, "00000a00"), "00000002");
}

}  // namespace
