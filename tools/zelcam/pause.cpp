#include "tools/zelcam/pause.h"

#include <algorithm>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <thread>

#include "tools/zelcam/interrupt.h"

namespace {

// With `digits` of the second behind the point, 6 at most.
std::string TimeText(const std::tm& time, const char* format, WallClock::time_point exact,
                     size_t digits) {
    using std::chrono::microseconds;
    constexpr int64_t inSecond = 1000000;
    const auto us = std::chrono::duration_cast<microseconds>(exact.time_since_epoch()).count();
    std::ostringstream text;
    text << std::put_time(&time, format) << '.'
         << std::to_string(inSecond + us % inSecond).substr(1, digits);
    return text.str();
}

}  // namespace

void Pause(uint64_t milliseconds) {
    while (milliseconds > 0 && !Interrupted()) {
        const uint64_t slice = std::min(milliseconds, sliceMs);
        std::this_thread::sleep_for(std::chrono::milliseconds(slice));
        milliseconds -= slice;
    }
}

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
