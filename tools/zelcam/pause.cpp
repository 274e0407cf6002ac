#include "tools/zelcam/pause.h"

#include <algorithm>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <thread>

#include "tools/zelcam/interrupt.h"

void Pause(uint64_t milliseconds) {
    while (milliseconds > 0 && !Interrupted()) {
        const uint64_t slice = std::min(milliseconds, sliceMs);
        std::this_thread::sleep_for(std::chrono::milliseconds(slice));
        milliseconds -= slice;
    }
}

std::string ClockText() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto sinceEpoch = now.time_since_epoch();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch) % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    std::ostringstream text;
    text << std::put_time(&local, "%H:%M:%S") << '.' << std::setw(3) << std::setfill('0')
         << ms.count();
    return text.str();
}
