// Commands and their acknowledges, as literal bytes, with a clock of the test.
#include "producers/gigevision/control/gvcprequests.h"

#include <string>

#include <gmock/gmock.h>

#include "tests/wire/bytes.h"

using WireTest::Bytes;
using WireTest::Hex;
using WireTest::ViewOf;
using ZelGev::Exchange;
using ZelGev::GvcpRequests;
using ZelGev::Milliseconds;
using ZelGev::RequestLimits;
using ZelGev::Time;

namespace {

class GvcpRequestsTest : public ::testing::Test {
  protected:
    // What is to be sent now, as digits, with blanks between datagrams.
    std::string Sent() {
        std::string text;
        while (const auto datagram = requests_.NextDatagram(now_)) {
            if (!text.empty()) text += ' ';
            for (size_t i = 0; i < datagram->size; ++i) {
                text += "0123456789abcdef"[datagram->U8(i) >> 4];
                text += "0123456789abcdef"[datagram->U8(i) & 15];
            }
        }
        return text;
    }

    void Hear(const char* digits) {
        const Bytes bytes = Hex(digits);
        requests_.OnDatagram(ViewOf(bytes), now_);
    }

    void Pass(int64_t milliseconds) {
        now_ += Milliseconds(milliseconds);
        requests_.OnTimer(now_);
    }

    Time now_ = Time() + std::chrono::hours(1);
    GvcpRequests requests_{0xFFFE, RequestLimits{Milliseconds(200), 3}};
};

const std::string kFirst = "420100800004ffff00000a00";
const std::string kSecond = "42010080000400010000" + std::string("0b00");

}  // namespace

TEST_F(GvcpRequestsTest, NumbersSkipZeroAndOneCommandIsOnItsWay) {
    Exchange first = Exchange::ReadReg(0x0A00);
    Exchange second = Exchange::ReadReg(0x0B00);
    requests_.Add(first);
    requests_.Add(second);
    EXPECT_EQ(Sent(), kFirst);
    EXPECT_EQ(Sent(), "");
    Hear("000000810004ffff 00000002");
    ASSERT_TRUE(first.Succeeded());
    EXPECT_EQ(first.payload[3], 2);
    EXPECT_EQ(Sent(), kSecond);
    EXPECT_FALSE(second.IsDone());
}

TEST_F(GvcpRequestsTest, UnansweredCommandsAreRepeatedWithTheirNumberAndGivenUp) {
    Exchange exchange = Exchange::ReadReg(0x0A00);
    requests_.Add(exchange);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Sent(), kFirst);
        Pass(199);
        EXPECT_EQ(Sent(), "");
        EXPECT_EQ(requests_.NextDeadline(), now_ + Milliseconds(1));
        Pass(1);
    }
    EXPECT_EQ(exchange.state, Exchange::State::Unanswered);
    EXPECT_EQ(requests_.Statistics().repetitions, 2U);
    Hear("000000810004ffff 00000002");
    EXPECT_EQ(exchange.state, Exchange::State::Unanswered);
    EXPECT_EQ(requests_.Statistics().strayAcks, 1U);
    EXPECT_FALSE(requests_.NextDeadline());
}

TEST_F(GvcpRequestsTest, AcknowledgesOfOthersAreDroppedAndWaitedOn) {
    Exchange exchange = Exchange::ReadReg(0x0A00);
    requests_.Add(exchange);
    Sent();
    Hear("000000810004fffe 00000001");           // an older command
    Hear("000000830004ffff 00000001");           // of another kind
    Hear("000000810008ffff 00000001");           // cut
    Hear("000000810004ffff 0000000100");         // too long
    Hear("000000810000ffff");                    // without the value
    Hear("000000810008ffff 00000001 00000002");  // of two registers
    Hear("00000081");
    Hear("");
    EXPECT_EQ(exchange.state, Exchange::State::Sent);
    EXPECT_EQ(Sent(), "") << "nothing is repeated because of them";
    Hear("000000810004ffff 00000002");
    EXPECT_TRUE(exchange.Succeeded());
    Hear("000000810004ffff 00000003");
    EXPECT_EQ(exchange.payload[3], 2) << "the second one of a doubled acknowledge";
    EXPECT_EQ(requests_.Statistics().strayAcks, 9U);
}

TEST_F(GvcpRequestsTest, MemoryOfAnotherAddressIsNoAnswer) {
    Exchange exchange = Exchange::ReadMem(0x0A00, 4);
    requests_.Add(exchange);
    Sent();
    Hear("000000850008ffff 00000a04 00000001");
    EXPECT_EQ(exchange.state, Exchange::State::Sent);
    Hear("000000850008ffff 00000a00 00000002");
    EXPECT_TRUE(exchange.Succeeded());
}

TEST_F(GvcpRequestsTest, PendingCommandsWaitAsLongAsTheCameraSays) {
    Exchange exchange = Exchange::WriteReg(0xA000, 1);
    requests_.Add(exchange);
    Sent();
    Pass(150);
    Hear("000000890004ffff ffff1388");  // 5000 ms; the upper half is not used
    EXPECT_TRUE(requests_.IsPending());
    Pass(5199);
    EXPECT_EQ(Sent(), "");
    Hear("000000890004ffff 00001388");
    Pass(5199);
    EXPECT_EQ(exchange.state, Exchange::State::Sent);
    Hear("000000830004ffff 00000001");
    EXPECT_TRUE(exchange.Succeeded());
    EXPECT_FALSE(requests_.IsPending());
}

TEST_F(GvcpRequestsTest, ACameraCannotKeepACallerForEver) {
    Exchange exchange = Exchange::WriteReg(0xA000, 1);
    requests_.Add(exchange);
    for (int i = 0; i < 1000 && !exchange.IsDone(); ++i) {
        Sent();
        Hear("000000890004ffff 0000ffff");
        Pass(60'000);
    }
    EXPECT_EQ(exchange.state, Exchange::State::Unanswered);
    EXPECT_LE(now_, exchange.firstSent + std::chrono::minutes(6));
}

TEST_F(GvcpRequestsTest, NothingIsWaitedForBeyondADeadline) {
    Exchange pending = Exchange::WriteReg(0xA000, 1);
    Exchange busy = Exchange::WriteReg(0xA000, 2);
    Exchange silent = Exchange::WriteReg(0xA000, 3);
    requests_.SetDeadline(now_ + Milliseconds(350));
    requests_.Add(pending);
    Sent();
    Hear("000000890004ffff 0000ffff");
    EXPECT_EQ(requests_.NextDeadline(), now_ + Milliseconds(350));
    Pass(330);
    requests_.Add(busy);
    Pass(20);
    EXPECT_EQ(pending.state, Exchange::State::Unanswered) << "and not repeated";

    requests_.SetDeadline(now_ + Milliseconds(20));
    Sent();
    Hear("8007008300000001");
    EXPECT_EQ(busy.status, ZelCti::Gev::Status::Busy) << "a pause would be too long";
    requests_.Add(silent);
    Sent();
    Pass(20);
    EXPECT_EQ(silent.state, Exchange::State::Unanswered);
}

TEST_F(GvcpRequestsTest, BusyAndMisalignedCommandsAreTriedAnew) {
    Exchange busy = Exchange::ReadReg(0x0A00);
    requests_.Add(busy);
    Sent();
    Hear("800700810000ffff");
    EXPECT_EQ(Sent(), "") << "not at once";
    Pass(20);
    EXPECT_EQ(Sent(), "420100800004000100000a00") << "a new command";
    uint8_t id = 1;
    for (; !busy.IsDone() && id < 100; ++id) {
        Hear(("80070081000000" + std::string(id < 16 ? "0" : "") + "0123456789abcdef"[id]).c_str());
        Pass(1000);
        Sent();
    }
    EXPECT_EQ(busy.status, ZelCti::Gev::Status::Busy);
    EXPECT_EQ(id, 6);

    Exchange misaligned = Exchange::ReadReg(0x0A00);
    requests_.Add(misaligned);
    Sent();
    Hear("8005008100000006");
    Pass(20);
    Sent();
    EXPECT_FALSE(misaligned.IsDone());
    Hear("8005008100000007");
    EXPECT_EQ(misaligned.status, ZelCti::Gev::Status::BadAlignment);
}

TEST_F(GvcpRequestsTest, HeartbeatsOvertakeAndPipelinesAreBounded) {
    std::vector<Exchange> blocks;
    for (uint32_t i = 0; i < 6; ++i) {
        blocks.push_back(Exchange::ReadMem(i * 512, 4));
        blocks.back().lane = Exchange::Lane::Pipelined;
    }
    Exchange ordinary = Exchange::ReadReg(0x0B00);
    Exchange heartbeat = Exchange::ReadReg(0x0A00);
    heartbeat.lane = Exchange::Lane::Heartbeat;
    for (Exchange& block : blocks)
        requests_.Add(block);
    requests_.Add(ordinary);
    requests_.Add(heartbeat);
    Sent();
    const auto isSent = [](const Exchange& one) { return one.state == Exchange::State::Sent; };
    EXPECT_EQ(std::count_if(blocks.begin(), blocks.end(), isSent), 4);
    EXPECT_TRUE(isSent(heartbeat));
    EXPECT_FALSE(isSent(ordinary));
    Hear("000000850008ffff 0000000012345678");
    EXPECT_TRUE(blocks[0].Succeeded());
    Sent();
    EXPECT_TRUE(isSent(blocks[4]));
    EXPECT_FALSE(isSent(ordinary));

    requests_.CancelAll();
    EXPECT_EQ(ordinary.state, Exchange::State::Cancelled);
    EXPECT_EQ(Sent(), "");
}
