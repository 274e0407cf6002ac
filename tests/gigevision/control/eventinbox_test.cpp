// Messages of a camera as literal bytes.
#include "producers/gigevision/control/eventinbox.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/wire/bytes.h"

using testing::ElementsAre;
using testing::IsEmpty;
using WireTest::Bytes;
using WireTest::Hex;
using WireTest::ViewOf;
using ZelGev::EventInbox;

namespace {

class EventInboxTest : public ::testing::Test {
  protected:
    // The acknowledge.
    Bytes Hear(const std::string& digits) {
        const Bytes bytes = Hex(digits);
        Bytes answer(8);
        answer.resize(inbox_.OnDatagram(ViewOf(bytes), {answer.data(), answer.size()}));
        return answer;
    }

    std::vector<Bytes> heard_;
    std::vector<uint16_t> ids_;
    EventInbox inbox_{[this](uint16_t id, ZelCti::ByteView message) {
        ids_.push_back(id);
        heard_.emplace_back(message.data, message.data + message.size);
    }};
};

const std::string kEntry1 = "0000 9001 0000 0007 0000000000000064";
const std::string kEntry2 = "0000 9002 ffff 0000 0000000000000065";

}  // namespace

TEST_F(EventInboxTest, AnEventIsDeliveredAsItCameAndAcknowledgedWhenAskedFor) {
    EXPECT_EQ(Hear("420100c000100001" + kEntry1), Hex("000000c100000001"));
    EXPECT_THAT(heard_, ElementsAre(Hex("420100c000100001" + kEntry1)));
    EXPECT_THAT(Hear("420000c000100002" + kEntry1), IsEmpty());
    EXPECT_THAT(ids_, ElementsAre(0x9001, 0x9001));
}

TEST_F(EventInboxTest, SeveralEventsOfAMessageComeOneByOne) {
    Hear("420100c000200001" + kEntry1 + kEntry2);
    EXPECT_THAT(heard_,
                ElementsAre(Hex("420100c000100001" + kEntry1), Hex("420100c000100001" + kEntry2)));
    heard_.clear();
    // With 64-bit block ids and data: 28 and 24 bytes.
    const std::string first = "001c 9011 0000 0000 0000000000000007 0000000000000064 12345678";
    const std::string second = "0018 9012 0000 0000 0000000000000008 0000000000000065";
    EXPECT_EQ(Hear("421100c200340002" + first + second), Hex("000000c300000002"));
    EXPECT_THAT(heard_,
                ElementsAre(Hex("421100c2001c0002" + first), Hex("421100c200180002" + second)));
}

TEST_F(EventInboxTest, RepetitionsAreAcknowledgedAndNotDeliveredAgain) {
    Hear("420100c000100001" + kEntry1);
    EXPECT_EQ(Hear("420100c000100001" + kEntry1), Hex("000000c100000001"));
    EXPECT_EQ(heard_.size(), 1U);
    Hear("420100c000100001" + kEntry2);
    EXPECT_EQ(heard_.size(), 2U) << "another event of a camera that does not count";
}

TEST_F(EventInboxTest, WhatIsNoEventIsIgnored) {
    for (const char* const digits :
         {"", "42", "420100c0000f0001 000090010000000700000000000000", "420100c000000001",
          "420100800004000100000a00", "000000c100000001",
          "420100c000100000 00009001000000070000000000000064",
          "421100c200180001 fff0900100000000000000000000000700000000000000 64"})
        EXPECT_THAT(Hear(digits), IsEmpty()) << digits;
    EXPECT_THAT(heard_, IsEmpty());
}
