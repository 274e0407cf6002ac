#include "tools/zelcam/console/timetext.h"

#include <ctime>
#include <iomanip>
#include <sstream>

namespace ZelTool {

namespace {

// The time with `digits` decimal places of the second, at most 6.
std::string TimeText(const std::tm& time, const char* format, WallClock::time_point exact,
                     size_t digits) {
    using std::chrono::microseconds;
    constexpr int64_t kInSecond = 1000000;
    const auto us = std::chrono::duration_cast<microseconds>(exact.time_since_epoch()).count();
    std::ostringstream text;
    text << std::put_time(&time, format) << '.'
         << std::to_string(kInSecond + us % kInSecond).substr(1, digits);
    return text.str();
}

}  // namespace

std::string TimeOfDay(WallClock::time_point time) {
    const std::time_t seconds = WallClock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    return TimeText(local, "%H:%M:%S", time, 3);
}

std::string TimeStamp(WallClock::time_point time) {
    const std::time_t seconds = WallClock::to_time_t(time);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    return TimeText(utc, "%Y-%m-%dT%H:%M:%S", time, 6) + "Z";
}

}  // namespace ZelTool
