// Events that a device sends, in the forms of all versions.

#include "producers/wire/gvcpevents.h"

#include <gtest/gtest.h>

#include "producers/wire/eventmessage.h"
#include "tests/wire/bytes.h"
#include "tests/wire/gvcpmessage.h"

namespace ZelCti::Gvcp {

using namespace WireTest;

namespace {

constexpr bool kExtended = true;

std::vector<Event> EventsIn(const CommandMessage& message) {
    std::vector<Event> events;
    const auto decoded = DecodeEvents(message.command);
    EXPECT_TRUE(decoded);
    if (decoded) {
        for (const Event& event : *decoded)
            events.push_back(event);
    }
    return events;
}

void ExpectEvent(const Event& event, uint16_t id, uint16_t streamChannel, uint64_t blockId,
                 uint64_t timestamp, const Bytes& data = {}) {
    EXPECT_EQ(id, event.id);
    EXPECT_EQ(streamChannel, event.streamChannel);
    EXPECT_EQ(blockId, event.blockId);
    EXPECT_EQ(timestamp, event.timestamp);
    EXPECT_EQ(data, Bytes(event.data.data, event.data.data + event.data.size));
}

std::optional<Fault> FaultOfEvents(std::string_view digits) {
    const CommandMessage message(digits);
    return FaultOf(DecodeEvents(message.command));
}

using EncodeFunction = size_t (*)(ByteSpan, Request, bool, const Event*, size_t);

Bytes EncodedEvents(EncodeFunction encode, Request request, bool extendedIds,
                    const std::vector<Event>& events) {
    return Encoded([&](ByteSpan out) {
        return encode(out, request, extendedIds, events.data(), events.size());
    });
}

}  // namespace

TEST(GvcpEventTest, Event) {
    const CommandMessage message("420100c00010000100009001ffff000018ea6087f7902796");
    EXPECT_EQ(Code::EventCmd, message.command.code);
    const auto events = EventsIn(message);
    ASSERT_EQ(1U, events.size());
    ExpectEvent(events[0], 0x9001, kNoStreamChannel, 0, 0x18EA6087F7902796);
    EXPECT_EQ(message.bytes,
              EncodedEvents(EncodeEventCmd, {1}, !kExtended,
                            {{0x9001, kNoStreamChannel, 0, 0x18EA6087F7902796, {}}}));
}

TEST(GvcpEventTest, SeveralEvents) {
    const CommandMessage message(
        "420100c00020000a00000007000000000102030405060708000080010001004d0102030405060708");
    const auto events = EventsIn(message);
    ASSERT_EQ(2U, events.size());
    ExpectEvent(events[0], EventId::kPrimaryApplicationSwitch, 0, 0, 0x0102030405060708);
    ExpectEvent(events[1], EventId::kFirstError, 1, 77, 0x0102030405060708);
    EXPECT_EQ(message.bytes, EncodedEvents(EncodeEventCmd, {10}, !kExtended,
                                           {{0x0007, 0, 0, 0x0102030405060708, {}},
                                            {0x8001, 1, 77, 0x0102030405060708, {}}}));
}

TEST(GvcpEventTest, EventWithExtendedIds) {
    const CommandMessage message(
        "421100c000180007000090010000000011223344556677880102030405060708");
    const auto events = EventsIn(message);
    ASSERT_EQ(1U, events.size());
    ExpectEvent(events[0], 0x9001, 0, 0x1122334455667788, 0x0102030405060708);
    EXPECT_EQ(message.bytes,
              EncodedEvents(EncodeEventCmd, {7}, kExtended,
                            {{0x9001, 0, 0x1122334455667788, 0x0102030405060708, {}}}));
}

TEST(GvcpEventTest, EventData) {
    const CommandMessage message("420100c20014000200009001ffff000018ea6087f7905cd701020304");
    EXPECT_EQ(Code::EventDataCmd, message.command.code);
    const auto events = EventsIn(message);
    ASSERT_EQ(1U, events.size());
    ExpectEvent(events[0], 0x9001, 0xFFFF, 0, 0x18EA6087F7905CD7, {1, 2, 3, 4});
    const Bytes data{1, 2, 3, 4};
    EXPECT_EQ(message.bytes,
              EncodedEvents(EncodeEventDataCmd, {2}, !kExtended,
                            {{0x9001, 0xFFFF, 0, 0x18EA6087F7905CD7, ViewOf(data)}}));
}

TEST(GvcpEventTest, EventDataWithExtendedIds) {
    const CommandMessage message(
        "421100c2001c0008001c90020001000011223344556677880102030405060708deadbeef");
    const auto events = EventsIn(message);
    ASSERT_EQ(1U, events.size());
    ExpectEvent(events[0], 0x9002, 1, 0x1122334455667788, 0x0102030405060708,
                {0xDE, 0xAD, 0xBE, 0xEF});
    const Bytes data{0xDE, 0xAD, 0xBE, 0xEF};
    EXPECT_EQ(message.bytes,
              EncodedEvents(EncodeEventDataCmd, {8}, kExtended,
                            {{0x9002, 1, 0x1122334455667788, 0x0102030405060708, ViewOf(data)}}));
}

// The sizes lead from one to the next; the last one has none, and takes what is left.
TEST(GvcpEventTest, SeveralEventsWithData) {
    constexpr std::string_view kFirst =
        "001c 9002 0001 0000 0000000000000001 0000000000000002 deadbeef";
    constexpr std::string_view kSecond = "0018 9003 0002 0000 0000000000000003 0000000000000004";
    constexpr std::string_view kThird =
        "0000 9004 0003 0000 0000000000000005 0000000000000006 cafe";
    const CommandMessage message("421100c2004e0009" + std::string(kFirst) + std::string(kSecond) +
                                 std::string(kThird));
    const auto events = EventsIn(message);
    ASSERT_EQ(3U, events.size());
    ExpectEvent(events[0], 0x9002, 1, 1, 2, {0xDE, 0xAD, 0xBE, 0xEF});
    ExpectEvent(events[1], 0x9003, 2, 3, 4);
    ExpectEvent(events[2], 0x9004, 3, 5, 6, {0xCA, 0xFE});

    EXPECT_EQ(Hex("421100c200340009" + std::string(kFirst) + std::string(kSecond)),
              EncodedEvents(EncodeEventDataCmd, {9}, kExtended, {events[0], events[1]}));
}

TEST(GvcpEventTest, RequestKeepsItsFlags) {
    const Bytes bytes = EncodedEvents(EncodeEventCmd, {7, 0}, kExtended, {{}});
    EXPECT_EQ(Flag::kExtendedIds, bytes[1]);
    EXPECT_EQ(0, EncodedEvents(EncodeEventCmd, {7, 0}, !kExtended, {{}})[1]);
}

TEST(GvcpEventTest, WrongSizesAreFaults) {
    constexpr std::string_view kEntry = "00009001ffff000018ea6087f7902796";
    const std::string entry(kEntry);
    // No entry, the half of one, one and a half.
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("420100c000000001"));
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("420100c000080001 00009001ffff0000"));
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("420100c000180001" + entry + "00009001ffff0000"));
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("420100c200080001 00009001ffff0000"));
    // Long enough without extended ids only.
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("421100c000100001" + entry));
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("421100c200100001" + entry));

    // Sizes of events that are smaller than an entry, or leave the message.
    const std::string rest = "9002 0001 0000 0000000000000001 0000000000000002 deadbeef";
    EXPECT_EQ(std::nullopt, FaultOfEvents("421100c2001c0009 001c" + rest));
    EXPECT_EQ(Fault::WrongEntrySize, FaultOfEvents("421100c2001c0009 001d" + rest));
    EXPECT_EQ(Fault::WrongEntrySize, FaultOfEvents("421100c2001c0009 0017" + rest));
    EXPECT_EQ(Fault::WrongEntrySize, FaultOfEvents("421100c2001c0009 0001" + rest));
    EXPECT_EQ(Fault::WrongEntrySize, FaultOfEvents("421100c2001c0009 ffff" + rest));
    EXPECT_EQ(Fault::TooShort, FaultOfEvents("421100c2001c0009 0018" + rest));
}

// What simulated cameras hand to consumers of the producer.
TEST(GvcpEventTest, MessagesOfCameras) {
    const auto bytes = [](const EventMessage& message) {
        return Bytes(message.bytes.begin(), message.bytes.begin() + message.size);
    };
    EXPECT_EQ(Hex("420100c000100007 0000 9fff ffff 0000 0102030405060708"),
              bytes(EncodeGevEvent({0x9FFF, 0x0102030405060708, std::nullopt}, {7}, false)));
    EXPECT_EQ(Hex("420100c200180007 0000 9011 ffff 0000 0102030405060708 0000000000010005"),
              bytes(EncodeGevEvent({0x9011, 0x0102030405060708, 0x10005}, {7}, false)));
    EXPECT_EQ(Hex("421000c200200007 0020 9011 ffff 0000 0000000000000000 0102030405060708"
                  "0000000000010005"),
              bytes(EncodeGevEvent({0x9011, 0x0102030405060708, 0x10005}, {7, 0}, true)));
    EXPECT_EQ(Hex("55335645 0000 000c 1400 0700 0000 1190 0807060504030201 0500010000000000"),
              bytes(EncodeU3vEvent({0x9011, 0x0102030405060708, 0x10005}, 7)));
}

}  // namespace ZelCti::Gvcp
