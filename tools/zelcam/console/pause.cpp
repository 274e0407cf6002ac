#include "tools/zelcam/console/pause.h"

#include <algorithm>
#include <thread>

#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

void Pause(uint64_t milliseconds) {
    while (milliseconds > 0 && !Interrupted()) {
        const uint64_t slice = std::min(milliseconds, kSliceMs);
        std::this_thread::sleep_for(std::chrono::milliseconds(slice));
        milliseconds -= slice;
    }
}

}  // namespace ZelTool
