// What is read of listed cameras, as literal bytes, without a clock.
#include "producers/gigevision/discovery/cameraquery.h"

#include <map>

#include <gmock/gmock.h>

#include "tests/gigevision/discovery/discoveryack.h"

using std::chrono::milliseconds;
using testing::ElementsAre;
using ZelGev::CameraQuery;
using ZelGev::Time;
using ZelTest::Bytes;

namespace {

constexpr Time kStart{std::chrono::hours(1)};
constexpr uint32_t kLeft = 0x0A010005;
constexpr uint32_t kRight = 0x0A010006;

class CameraQueryTest : public ::testing::Test {
  protected:
    CameraQuery Query(const std::vector<uint32_t>& cameras) {
        return {cameras, kStart, [this] { return ++lastRequest_; },
                [this](uint32_t camera, ZelCti::ByteView command) {
                    sent_[camera].emplace_back(command.data, command.data + command.size);
                }};
    }

    // Acknowledges the latest question to a camera with a value.
    void Answer(CameraQuery& query, uint32_t camera, uint32_t value) {
        const Bytes& asked = sent_[camera].back();
        Receive(query, camera,
                {0, 0, 0, 0x81, 0, 4, asked[6], asked[7], static_cast<uint8_t>(value >> 24),
                 static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8),
                 static_cast<uint8_t>(value)});
    }
    void Refuse(CameraQuery& query, uint32_t camera, uint8_t status) {
        const Bytes& asked = sent_[camera].back();
        Receive(query, camera, {0x80, status, 0, 0x81, 0, 0, asked[6], asked[7]});
    }
    static void Receive(CameraQuery& query, uint32_t camera, const Bytes& bytes) {
        query.OnDatagram({camera, 3956}, {bytes.data(), bytes.size()}, kStart);
    }

    uint16_t lastRequest_ = 0;
    std::map<uint32_t, std::vector<Bytes>> sent_;
};

}  // namespace

TEST_F(CameraQueryTest, TellsWhoHasControl) {
    CameraQuery query = Query({kLeft});
    ASSERT_EQ(sent_[kLeft].size(), 1U);
    const Bytes first = sent_[kLeft].back();
    EXPECT_THAT(Bytes(first.begin(), first.begin() + 6), ElementsAre(0x42, 1, 0, 0x80, 0, 4));
    EXPECT_THAT(Bytes(first.begin() + 8, first.end()), ElementsAre(0, 0, 0x0A, 0));
    EXPECT_EQ(query.ReadingOf(kLeft), std::nullopt) << "nothing is known yet";
    Answer(query, kLeft, 2);  // CCP
    Answer(query, kLeft, 1);  // ticks, high word
    Answer(query, kLeft, 5);
    EXPECT_FALSE(query.IsDone());
    Answer(query, kLeft, 0x0A000007);
    Answer(query, kLeft, 40000);
    EXPECT_TRUE(query.IsDone());
    const auto reading = query.ReadingOf(kLeft);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->ccp, 2U);
    EXPECT_EQ(reading->holder, (ZelCti::Endpoint{0x0A000007, 40000}));
    EXPECT_EQ(reading->ticksPerSecond, 0x100000005U);
}

TEST_F(CameraQueryTest, LackOfARegisterIsNoObstacle) {
    CameraQuery query = Query({kLeft});
    Answer(query, kLeft, 0);
    Refuse(query, kLeft, 0x03);  // INVALID_ADDRESS
    Answer(query, kLeft, 1000);
    EXPECT_TRUE(query.IsDone());
    EXPECT_EQ(query.ReadingOf(kLeft)->ticksPerSecond, 1000U);
    EXPECT_EQ(query.ReadingOf(kLeft)->holder.address, 0U) << "nobody controls it";
}

TEST_F(CameraQueryTest, ExclusiveControlMayForbidToRead) {
    CameraQuery query = Query({kLeft});
    Refuse(query, kLeft, 0x06);  // ACCESS_DENIED
    EXPECT_TRUE(query.ReadingOf(kLeft)->isDenied);
}

TEST_F(CameraQueryTest, OneSilentCameraDelaysNoOther) {
    CameraQuery query = Query({kLeft, kRight});
    for (int i = 0; i < 3; ++i)
        Answer(query, kRight, 0);
    EXPECT_EQ(query.NextDeadline(), kStart + milliseconds(60));
    query.OnTimer(kStart + milliseconds(60));
    ASSERT_EQ(sent_[kLeft].size(), 2U);
    EXPECT_EQ(sent_[kLeft][0], sent_[kLeft][1]) << "a repetition keeps its number";
    EXPECT_EQ(sent_[kRight].size(), 3U);
    query.OnTimer(kStart + milliseconds(250));
    EXPECT_TRUE(query.IsDone());
    ASSERT_TRUE(query.ReadingOf(kLeft));
    EXPECT_FALSE(query.ReadingOf(kLeft)->isAnswered);
    EXPECT_TRUE(query.ReadingOf(kRight)->isAnswered);
}

TEST_F(CameraQueryTest, OtherAcknowledgesAreNotTaken) {
    CameraQuery query = Query({kLeft});
    const Bytes asked = sent_[kLeft].back();
    const auto wrong = static_cast<uint8_t>(asked[7] + 1);
    Receive(query, kLeft, {0, 0, 0, 0x81, 0, 4, asked[6], wrong, 0, 0, 0, 2});
    Receive(query, kLeft, {0, 0, 0, 0x85, 0, 4, asked[6], asked[7], 0, 0, 0, 2});
    Receive(query, kRight, {0, 0, 0, 0x81, 0, 4, asked[6], asked[7], 0, 0, 0, 2});
    Receive(query, kLeft, {});
    const Bytes early = {0, 0, 0, 0x81, 0, 4, asked[6], asked[7], 0, 0, 0, 2};
    query.OnDatagram({kLeft, 4000}, {early.data(), early.size()}, kStart);
    EXPECT_EQ(query.ReadingOf(kLeft), std::nullopt);
    EXPECT_EQ(sent_[kLeft].size(), 1U);
}
