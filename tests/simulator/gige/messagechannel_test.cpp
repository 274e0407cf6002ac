// The events of a camera on a network, as literal bytes.

#include "producers/simulator/gige/control/messagechannel.h"

#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "producers/simulator/camera/eventchannel.h"
#include "tests/wire/bytes.h"

namespace ZelSim {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using WireTest::Bytes;
using WireTest::Hex;
using namespace std::chrono_literals;

namespace {

// A channel that is open, and the camera that it listens to.
class MessageChannelTest : public ::testing::Test {
  protected:
    MessageChannelTest() {
        channel.SetAddress(0x0A4D0001);
        channel.SetPort(4000);
    }

    void Fire(uint64_t timestamp, std::optional<uint64_t> frame = {}) {
        camera.Send(EventKind::Test, timestamp, frame);
    }

    // Runs the thread of the device once, so many milliseconds after the start.
    void RunAt(int ms) { channel.OnTimer(start + std::chrono::milliseconds(ms)); }

    void Answer(int ms, std::string_view digits) {
        const Bytes ack = Hex(digits);
        channel.OnAck(WireTest::ViewOf(ack), start + std::chrono::milliseconds(ms));
    }

    // What was sent since the last call.
    std::vector<Bytes> Sent() { return std::exchange(sent, {}); }

    const MessageChannel::Time start{1000s};
    std::vector<Bytes> sent;
    std::vector<ZelCti::Endpoint> receivers;
    int numWakes = 0;
    MessageChannel channel{5001,
                           [this](const ZelCti::Endpoint& to, ZelCti::ByteView message) {
                               receivers.push_back(to);
                               sent.emplace_back(message.data, message.data + message.size);
                           },
                           [this] { ++numWakes; }};
    EventChannel camera{TLTypeGEVName};
    ZelCti::Claim subscription = camera.Subscribe(channel);
};

const Bytes kFirst = Hex("420100c000100001 0000 9fff ffff 0000 0000000000000011");
const Bytes kSecond = Hex("420100c000100002 0000 9fff ffff 0000 0000000000000022");

}  // namespace

TEST_F(MessageChannelTest, WithoutTimeoutEventsAskForNoAcknowledge) {
    EXPECT_EQ(channel.NextDeadline(), MessageChannel::Time::max());
    Fire(0x11);
    Fire(0x22, 0x10005);
    EXPECT_EQ(numWakes, 2);
    EXPECT_THAT(Sent(), IsEmpty());
    EXPECT_LE(channel.NextDeadline(), start);
    RunAt(0);
    EXPECT_THAT(Sent(), ElementsAre(Hex("420000c000100001 0000 9fff ffff 0000 0000000000000011"),
                                    Hex("420000c200180002 0000 9fff ffff 0000 0000000000000022"
                                        "0000000000010005")));
    EXPECT_EQ(channel.NextDeadline(), MessageChannel::Time::max());
    EXPECT_EQ(receivers.front(), (ZelCti::Endpoint{0x0A4D0001, 4000}));
}

TEST_F(MessageChannelTest, EventsOfExtendedIds) {
    channel.SetExtendedIds(true);
    Fire(0x11, 0x1122334455667788);
    RunAt(0);
    EXPECT_THAT(Sent(), ElementsAre(Hex("421000c200200001 0020 9fff ffff 0000 0000000000000000"
                                        "0000000000000011 1122334455667788")));
}

TEST_F(MessageChannelTest, TheNextEventWaitsForTheAcknowledge) {
    channel.SetTimeout(200);
    Fire(0x11);
    Fire(0x22);
    RunAt(0);
    EXPECT_THAT(Sent(), ElementsAre(kFirst));
    EXPECT_EQ(channel.NextDeadline(), start + 200ms);
    Answer(10, "000000c100000002");  // of another event
    Answer(10, "0000008300000001");  // of another command
    Answer(10, "420100c100000001");  // a command
    Answer(10, "0000");
    EXPECT_THAT(Sent(), IsEmpty());
    Answer(10, "000000c100000001");
    EXPECT_THAT(Sent(), ElementsAre(kSecond));
    EXPECT_EQ(channel.NextDeadline(), start + 210ms);
    Answer(20, "800600c300000002");  // whatever it says of the event, it came
    EXPECT_EQ(channel.NextDeadline(), MessageChannel::Time::max());
    EXPECT_EQ(channel.NumLost(), 0U);
}

// The same message each time: the receiver knows it by its id.
TEST_F(MessageChannelTest, EventsAreRepeatedUntilNoRetryIsLeft) {
    channel.SetTimeout(200);
    channel.SetRetries(2);
    Fire(0x11);
    Fire(0x22);
    RunAt(0);
    RunAt(199);
    EXPECT_THAT(Sent(), ElementsAre(kFirst));
    RunAt(200);
    EXPECT_EQ(channel.NextDeadline(), start + 400ms);
    RunAt(400);
    EXPECT_THAT(Sent(), ElementsAre(kFirst, kFirst));
    EXPECT_EQ(channel.NumLost(), 0U);
    RunAt(600);
    EXPECT_THAT(Sent(), ElementsAre(kSecond));
    EXPECT_EQ(channel.NumLost(), 1U);
}

TEST_F(MessageChannelTest, AClosedChannelSendsNothing) {
    channel.SetTimeout(200);
    channel.SetRetries(5);
    Fire(0x11);
    Fire(0x22);
    RunAt(0);
    Sent();
    channel.SetPort(0);
    Fire(0x33);
    RunAt(1000);
    EXPECT_EQ(channel.NextDeadline(), MessageChannel::Time::max());
    channel.SetPort(4001);
    RunAt(2000);
    EXPECT_THAT(Sent(), IsEmpty());

    // Ids go on; what the camera says of itself otherwise is no event.
    const char name[] = "Width";
    channel.OnEvent(GenTL::EVENT_FEATURE_INVALIDATE, 0, {name, sizeof(name)});
    channel.OnEvent(GenTL::EVENT_REMOTE_DEVICE, 0, {name, sizeof(name)});
    Fire(0x22);
    RunAt(3000);
    EXPECT_THAT(Sent(), ElementsAre(kSecond));
    EXPECT_EQ(receivers.back().port, 4001);

    camera.ReportLoss();
    RunAt(4000);
    EXPECT_THAT(Sent(), IsEmpty());
}

TEST_F(MessageChannelTest, EventsThatFindNoRoomAreLost) {
    for (uint64_t i = 0; i < 70; ++i)
        Fire(i);
    EXPECT_EQ(channel.NumLost(), 6U);
    RunAt(0);
    ASSERT_EQ(sent.size(), 64U);
    EXPECT_EQ(sent.back().back(), 63);
    Fire(0x77);
    RunAt(1);
    EXPECT_EQ(Sent().back().back(), 0x77);
}

}  // namespace ZelSim
