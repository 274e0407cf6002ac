// When a search asks and when it is over, without a clock.
#include "producers/gigevision/discovery/round.h"

#include <gtest/gtest.h>

using std::chrono::milliseconds;
using ZelGev::Round;
using ZelGev::Time;

namespace {

constexpr Time kBegin{std::chrono::hours(1)};

Time At(int ms) {
    return kBegin + milliseconds(ms);
}

}  // namespace

TEST(Round, AsksTwiceAndThenAtIntervals) {
    Round round(kBegin, 0, true);
    EXPECT_TRUE(round.TakeAsk(At(0)));
    EXPECT_FALSE(round.TakeAsk(At(29)));
    EXPECT_EQ(round.NextDeadline(), At(30));
    EXPECT_TRUE(round.TakeAsk(At(30)));
    EXPECT_FALSE(round.TakeAsk(At(279)));
    EXPECT_TRUE(round.TakeAsk(At(280)));
    EXPECT_TRUE(round.TakeAsk(At(530)));
    EXPECT_FALSE(round.IsOver(At(999)));
    EXPECT_TRUE(round.IsOver(At(1000)));
    EXPECT_FALSE(round.TakeAsk(At(1000)));
}

TEST(Round, IsOverWhenNothingFollowsTheAnswers) {
    Round round(kBegin, 0, true);
    round.TakeAsk(At(0));
    round.OnAnswer(At(1), false);
    EXPECT_FALSE(round.IsOver(At(120))) << "one question may have got lost";
    round.TakeAsk(At(120));
    EXPECT_FALSE(round.IsOver(At(219)));
    EXPECT_TRUE(round.IsOver(At(220)));
    round.OnAnswer(At(215), false);
    EXPECT_FALSE(round.IsOver(At(220)));
    EXPECT_TRUE(round.IsOver(At(315)));
}

TEST(Round, WaitsForKnownCameras) {
    Round round(kBegin, 2, true);
    round.TakeAsk(At(0));
    round.TakeAsk(At(30));
    round.OnAnswer(At(31), true);
    round.OnAnswer(At(32), false);
    EXPECT_FALSE(round.IsOver(At(900)));
    round.OnAnswer(At(850), true);
    EXPECT_FALSE(round.IsOver(At(900)));
    EXPECT_TRUE(round.IsOver(At(950)));
}

TEST(Round, NobodyIsWaitedForWhereNobodyCanAnswer) {
    EXPECT_TRUE(Round(kBegin, 3, false).IsOver(kBegin));
    EXPECT_TRUE(Round().IsOver(kBegin));
    EXPECT_TRUE(Round(kBegin, 0, true, milliseconds(400)).IsOver(At(400)));
}
