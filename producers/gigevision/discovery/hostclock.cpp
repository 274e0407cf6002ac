#include "producers/gigevision/discovery/hostclock.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/timex.h>
#include <unistd.h>

#include <linux/ethtool.h>
#include <linux/ptp_clock.h>
#include <linux/sockios.h>
#include <net/if.h>

namespace ZelGev {

namespace {

constexpr unsigned kNumReadings = 5;
constexpr int64_t kNsPerUs = 1000;

int64_t NanosecondsOf(const ptp_clock_time& time) {
    constexpr int64_t kNsPerSecond = 1'000'000'000;
    return time.sec * kNsPerSecond + time.nsec;
}

// The number of the clock of an adapter, negative when it has none.
int ClockOf(const std::string& adapter) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return -1;
    ethtool_ts_info info{};
    info.cmd = ETHTOOL_GET_TS_INFO;
    info.phc_index = -1;
    ifreq request{};
    adapter.copy(request.ifr_name, sizeof request.ifr_name - 1);
    request.ifr_data = reinterpret_cast<char*>(&info);
    const bool isKnown = ioctl(descriptor, SIOCETHTOOL, &request) == 0;
    close(descriptor);
    return isKnown ? info.phc_index : -1;
}

}  // namespace

HostClock ReadHostClock() {
    timex state{};
    const int result = adjtimex(&state);  // reads only
    HostClock clock;
    if (result < 0) return clock;
    clock.isSynchronized = result != TIME_ERROR && (state.status & STA_UNSYNC) == 0;
    clock.offset = state.offset * ((state.status & STA_NANO) != 0 ? 1 : kNsPerUs);
    clock.maxError = state.maxerror * kNsPerUs;
    clock.taiOffset = state.tai;
    return clock;
}

std::optional<int64_t> OffsetFrom(const ptp_sys_offset& readings) {
    std::optional<int64_t> offset;
    int64_t shortest = std::numeric_limits<int64_t>::max();
    const size_t count = std::min<size_t>(readings.n_samples, PTP_MAX_SAMPLES);
    for (size_t i = 0; i < count; ++i) {  // system, adapter, system, adapter ... system
        const int64_t before = NanosecondsOf(readings.ts[2 * i]);
        const int64_t after = NanosecondsOf(readings.ts[2 * i + 2]);
        if (after - before >= shortest) continue;
        shortest = after - before;
        offset = NanosecondsOf(readings.ts[2 * i + 1]) - (before + shortest / 2);
    }
    return offset;
}

std::optional<int64_t> AdapterClockOffset(const std::string& adapter) {
    const int clock = ClockOf(adapter);
    if (clock < 0) return std::nullopt;
    const std::string file = "/dev/ptp" + std::to_string(clock);
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return std::nullopt;
    ptp_sys_offset readings{};
    readings.n_samples = kNumReadings;
    const bool isRead = ioctl(descriptor, PTP_SYS_OFFSET, &readings) == 0;
    close(descriptor);
    return isRead ? OffsetFrom(readings) : std::nullopt;
}

}  // namespace ZelGev
