// Programs that receive the pictures of simulated cameras on a network, to be measured from
// outside.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace BenchReceiver {

struct Options {
    std::string way;
    double seconds = 1;
    size_t cameras = 1;
    int socketBuffer = 0;    // of the stream; 0: as it is
    std::string method;      // GevStreamReceiveMethod; empty: as it is
    std::string arrivals;    // file for the times at which frames arrived; empty: none
    bool untilLost = false;  // ends with the loss of the camera
    // For the floor, which does not look for cameras.
    uint32_t camera = 0;
    uint32_t host = 0;
    uint32_t packetSize = 1500;
};

// When a frame arrived, in nanoseconds of CLOCK_REALTIME, as the kernel stamps packets.
struct Arrival {
    uint64_t frame;
    int64_t time;
};

int64_t RealTime();

void WriteArrivals(const std::string& file, const std::vector<Arrival>& arrivals);

// Through the library, as an application does; prints what came of it.
void ReceiveByLibrary(const Options& options);

// `recv` of each packet to where it belongs if none is lost, and nothing else.
void ReceiveBare(const Options& options);

}  // namespace BenchReceiver
