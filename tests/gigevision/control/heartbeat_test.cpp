// How control is kept and lost, with a clock of the test.
#include "producers/gigevision/control/heartbeat.h"

#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "producers/wire/gvcpcommands.h"

using ZelCti::Gev::Status;
using ZelGev::Exchange;
using ZelGev::GvcpRequests;
using ZelGev::Heartbeat;
using ZelGev::HeartbeatSettings;
using ZelGev::Milliseconds;
using ZelGev::RequestLimits;
using ZelGev::Time;
namespace Gvcp = ZelCti::Gvcp;

namespace {

constexpr ZelCti::Endpoint kSelf{0x7F000001, 4711};

class HeartbeatTest : public ::testing::Test {
  protected:
    void Start(HeartbeatSettings settings) { heartbeat_.emplace(settings, now_); }

    // The command that is sent now; none if it is not time for one.
    std::optional<Gvcp::Command> Beat() {
        Exchange* const exchange = heartbeat_->Begin(now_);
        if (exchange == nullptr) return std::nullopt;
        requests_.Add(*exchange);
        return Gvcp::DecodeCommand(*requests_.NextDatagram(now_)).operator*();
    }

    // The reason of a loss after these registers came.
    std::string Answer(const std::vector<uint32_t>& values, Status status = Status::Success) {
        return Finish([&](ZelCti::ByteSpan out, uint16_t id) {
            return Gvcp::EncodeReadRegAck(out, status, id, values.data(), values.size());
        });
    }

    // The same after an answer like that was asked for once more, which has to be at once.
    std::string AnswerTwice(const std::vector<uint32_t>& values, Status status = Status::Success) {
        EXPECT_EQ(Answer(values, status), "") << "it may be the answer to another command";
        EXPECT_TRUE(Beat());
        return Answer(values, status);
    }

    template <typename Encode>
    std::string Finish(const Encode& encode) {
        uint8_t bytes[Gvcp::kMaxMessageSize];
        const size_t size = encode(ZelCti::ByteSpan{bytes, sizeof bytes}, ++id_);
        requests_.OnDatagram({bytes, size}, now_);
        EXPECT_TRUE(heartbeat_->IsDone());
        return heartbeat_->End(requests_, now_);
    }

    // How long it takes until the command under way is given up.
    Milliseconds LetItFail() {
        const Time begin = now_;
        while (!heartbeat_->IsDone()) {
            now_ = *requests_.NextDeadline();
            requests_.OnTimer(now_);
            requests_.NextDatagram(now_);
        }
        ++id_;
        return std::chrono::duration_cast<Milliseconds>(now_ - begin);
    }

    Time now_ = Time() + std::chrono::hours(1);
    uint16_t id_ = 0;
    GvcpRequests requests_{0, RequestLimits{}};
    std::optional<Heartbeat> heartbeat_;
};

}  // namespace

TEST_F(HeartbeatTest, ComesThreeTimesInTheTimeOutAndOnceASecondAtLeast) {
    Start({Milliseconds(600), true, {}});
    EXPECT_TRUE(Beat());
    EXPECT_EQ(Answer({2}), "");
    EXPECT_EQ(heartbeat_->NextDeadline(), now_ + Milliseconds(200));
    EXPECT_FALSE(Beat());
    heartbeat_->FollowTimeout(Milliseconds(30'000), now_);
    EXPECT_TRUE(Beat());
    EXPECT_EQ(Answer({1}), "") << "exclusive access is control";
    EXPECT_EQ(heartbeat_->NextDeadline(), now_ + Milliseconds(1000));
}

TEST_F(HeartbeatTest, ControlIsLostWhenNobodyOrAnotherHasIt) {
    Start({Milliseconds(3000), true, kSelf});
    EXPECT_EQ(Gvcp::DecodeReadReg(*Beat())->size(), 3U);
    EXPECT_EQ(Answer({2, kSelf.port, kSelf.address}), "");
    now_ += Milliseconds(1000);
    Beat();
    EXPECT_NE(AnswerTwice({2, kSelf.port + 1U, kSelf.address}), "");
    now_ += Milliseconds(1000);
    Beat();
    EXPECT_EQ(Answer({0, 0, 0}), "");
    EXPECT_TRUE(Beat());
    EXPECT_EQ(Answer({2, kSelf.port, kSelf.address}), "");
    EXPECT_FALSE(Beat()) << "that was an answer to another command";
    now_ += Milliseconds(1000);
    Beat();
    EXPECT_NE(AnswerTwice({4, kSelf.port, kSelf.address}), "")
        << "a switchover alone is no control";
    now_ += Milliseconds(1000);
    Beat();
    EXPECT_NE(AnswerTwice({}, Status::AccessDenied), "");
    now_ += Milliseconds(1000);
    Beat();
    EXPECT_EQ(Answer({}, Status::InvalidAddress), "") << "the camera cannot say who it is";
    now_ += Milliseconds(1000);
    EXPECT_EQ(Gvcp::DecodeReadReg(*Beat())->size(), 1U);
}

TEST_F(HeartbeatTest, SilenceIsALossWithinTheTimeOut) {
    Start({Milliseconds(3000), true, {}});
    Beat();
    EXPECT_EQ(Answer({2}), "");
    const Time heard = now_;
    now_ += Milliseconds(1000);
    Beat();
    LetItFail();
    EXPECT_NE(heartbeat_->End(requests_, now_), "");
    EXPECT_EQ(now_, heard + Milliseconds(3000));
}

TEST_F(HeartbeatTest, ACameraThatAnswersOthersIsThere) {
    Start({Milliseconds(3000), true, {}});
    Exchange slow = Exchange::WriteReg(0xA000, 1);
    requests_.Add(slow);
    requests_.NextDatagram(now_);
    const uint8_t pending[] = {0, 0, 0, 0x89, 0, 4, 0, 1, 0, 0, 0xFF, 0xFF};
    requests_.OnDatagram({pending, sizeof pending}, now_);
    id_ = 1;
    now_ += Milliseconds(1);
    Beat();
    EXPECT_EQ(LetItFail(), Milliseconds(2000));
    EXPECT_EQ(heartbeat_->End(requests_, now_), "") << "it said that it is busy";
    Beat();
    const uint8_t done[] = {0, 0, 0, 0x83, 0, 4, 0, 1, 0, 0, 0, 1};
    requests_.OnDatagram({done, sizeof done}, now_);
    LetItFail();
    EXPECT_EQ(heartbeat_->End(requests_, now_), "") << "it has answered meanwhile";
    Beat();
    LetItFail();
    EXPECT_NE(heartbeat_->End(requests_, now_), "");
}

TEST_F(HeartbeatTest, DoubtAsksAtOnceAndWritesWhereReadingSaysTooLittle) {
    Start({Milliseconds(3000), true, {}});
    Beat();
    EXPECT_EQ(Answer({2}), "");
    heartbeat_->Doubt(now_);
    std::string reason;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(reason, "");
        const auto command = Beat();
        ASSERT_TRUE(command);
        EXPECT_EQ(command->code, Gvcp::Code::WriteRegCmd);
        EXPECT_EQ((*Gvcp::DecodeWriteReg(*command))[0].address, 0x0938U);
        EXPECT_EQ((*Gvcp::DecodeWriteReg(*command))[0].value, 3000U);
        reason = Finish([](ZelCti::ByteSpan out, uint16_t id) {
            return Gvcp::EncodeAck(out, Status::AccessDenied, Gvcp::Code::WriteRegCmd, id);
        });
    }
    EXPECT_NE(reason, "");
}

TEST_F(HeartbeatTest, AMonitorLosesOnlyACameraThatIsGone) {
    Start({Milliseconds(3000), false, {}});
    Beat();
    EXPECT_EQ(Answer({0}), "");
    now_ += Milliseconds(1000);
    Beat();
    EXPECT_EQ(Answer({}, Status::AccessDenied), "");
    heartbeat_->Doubt(now_);
    EXPECT_FALSE(Beat());
    now_ += Milliseconds(1000);
    Beat();
    LetItFail();
    EXPECT_NE(heartbeat_->End(requests_, now_), "");
}

TEST_F(HeartbeatTest, TheCameraGetsTheTimeOutOfADebuggerAndItsOwnBack) {
    Start({Milliseconds(3000), true, {}});
    heartbeat_->SetTimeoutOfCamera(Milliseconds(300'000), now_);
    const auto value = [this] { return (*Gvcp::DecodeWriteReg(*Beat()))[0].value; };
    const auto done = [](ZelCti::ByteSpan out, uint16_t id) {
        return Gvcp::EncodeWriteRegAck(out, Status::Success, id, 1);
    };
    EXPECT_EQ(value(), 300'000U);
    EXPECT_EQ(Finish(done), "");
    EXPECT_EQ(heartbeat_->NextDeadline(), now_ + Milliseconds(1000)) << "it is asked as before";
    heartbeat_->SetTimeoutOfCamera(Milliseconds(3000), now_);
    EXPECT_EQ(value(), 3000U);
}
