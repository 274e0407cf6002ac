// How a stream is received.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

#include "producers/wire/byteorder.h"

namespace ZelGev {

using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;
using Duration = Clock::duration;

struct ReceptionSettings {
    uint16_t channel = 0;  // the stream channel of the camera
    ZelCti::ByteOrder pixelOrder = ZelCti::ByteOrder::Little;
    bool deliverIncomplete = true;  // frames that lack packets; or else they are dropped

    bool resend = true;  // lost packets are asked for
    // A missing packet is lost when it has not come so long after its successor: networks change
    // the order of packets.
    Duration orderDelay = std::chrono::milliseconds(1);
    // The camera is asked for the next packet of a frame after so long a silence.
    Duration silence = std::chrono::milliseconds(10);
    // The least time between two requests for the same packet.
    Duration repeatDelay = std::chrono::milliseconds(3);
    uint32_t maxRequests = 8;  // for one packet
    // A frame is given up so long after its last packet came, if another one has begun; and after
    // some times as long when it delays nothing.
    Duration retention = std::chrono::milliseconds(100);
    // A frame with more runs of missing packets at a time is not asked for any more.
    size_t maxGaps = 1024;
    // Packets asked for: of one frame a percentage of its packets, but at least a number; and in a
    // second. Cameras that are asked for more stop to answer, or lose new frames.
    uint32_t maxAskedPercent = 200;
    uint32_t minAskedPerFrame = 1024;
    uint32_t maxAskedPerSecond = 50000;
};

}  // namespace ZelGev
