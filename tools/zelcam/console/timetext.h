// Times as text.
#pragma once

#include <chrono>
#include <string>

namespace ZelTool {

using WallClock = std::chrono::system_clock;

// Local time of day, for people: "17:04:59.123".
std::string TimeOfDay(WallClock::time_point time);

// Date and time in UTC, for programs: "2026-11-21T16:04:59.123456Z".
std::string TimeStamp(WallClock::time_point time);

}  // namespace ZelTool
