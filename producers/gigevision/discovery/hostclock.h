// The clocks of this machine, as far as they matter to cameras that share a time (IEEE 1588).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct ptp_sys_offset;

namespace ZelGev {

// The clock of the system.
struct HostClock {
    bool isSynchronized = false;  // it follows another one
    int64_t offset = 0;           // ns that it still has to be corrected by
    int64_t maxError = 0;         // ns
    int64_t taiOffset = 0;        // s that atomic time is ahead of it; 0: unknown
};

HostClock ReadHostClock();

// How far the clock of an adapter is ahead of that of the system, in ns. None of an adapter that
// has no clock, or whose clock this user may not read.
std::optional<int64_t> AdapterClockOffset(const std::string& adapter);

// The same from readings of both in turn: of the shortest one, which was disturbed least.
std::optional<int64_t> OffsetFrom(const ptp_sys_offset& readings);

}  // namespace ZelGev
