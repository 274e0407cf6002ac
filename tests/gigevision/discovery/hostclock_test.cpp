// The clocks of this machine.
#include "producers/gigevision/discovery/hostclock.h"

#include <gtest/gtest.h>
#include <linux/ptp_clock.h>

using ZelGev::OffsetFrom;

TEST(HostClock, TheShortestReadingCounts) {
    ptp_sys_offset readings{};
    EXPECT_EQ(OffsetFrom(readings), std::nullopt);
    readings.n_samples = 2;
    readings.ts[0] = {100, 0, 0};
    readings.ts[1] = {137, 9000, 0};
    readings.ts[2] = {100, 10000, 0};
    readings.ts[3] = {137, 12500, 0};
    readings.ts[4] = {100, 12000, 0};
    EXPECT_EQ(OffsetFrom(readings), 37'000'001'500);
    readings.ts[3] = {99, 999'999'000, 0};
    EXPECT_EQ(OffsetFrom(readings), -12'000) << "behind it";
    readings.n_samples = 4000;
    OffsetFrom(readings);
}

TEST(HostClock, TellsWhatTheSystemSays) {
    EXPECT_GE(ZelGev::ReadHostClock().maxError, 0);
    EXPECT_EQ(ZelGev::AdapterClockOffset("nosuch0"), std::nullopt);
    EXPECT_EQ(ZelGev::AdapterClockOffset("lo"), std::nullopt);
}
