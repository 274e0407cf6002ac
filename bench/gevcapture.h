// When what is sent and received at the cameras' end of the network.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "bench/network.h"

namespace Bench {

// Looks at a few packets only, so that the others are not delayed. Times are nanoseconds of
// CLOCK_REALTIME at which the kernel passed a packet on. Needs root.
class GevCapture {
  public:
    explicit GevCapture(const BenchNetwork& network);
    ~GevCapture();
    GevCapture(const GevCapture&) = delete;
    GevCapture& operator=(const GevCapture&) = delete;

    // The first datagram to the control port of cameras, from this one's begin on.
    std::optional<int64_t> FirstMessage() const;

    // The last packet of each frame, by its block id.
    std::map<uint64_t, int64_t> Trailers() const;

  private:
    void Open();
    void Run();
    void Look(const uint8_t* frame, size_t size, int64_t time);

    int socket_ = -1;
    std::atomic<bool> isEnding_{false};
    mutable std::mutex mutex_;
    std::optional<int64_t> firstMessage_;
    std::map<uint64_t, int64_t> trailers_;
    std::thread thread_;
};

}  // namespace Bench
