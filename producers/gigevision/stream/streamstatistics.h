// What happened to the packets and the blocks of a stream.
#pragma once

#include <atomic>
#include <cstdint>

namespace ZelGev {

// A number that one thread counts and any thread reads.
class Counter {
  public:
    void Add(uint64_t count = 1) {
        value_.store(value_.load(std::memory_order_relaxed) + count, std::memory_order_relaxed);
    }
    operator uint64_t() const { return value_.load(std::memory_order_relaxed); }

  private:
    std::atomic<uint64_t> value_{0};
};

struct StreamStatistics {
    Counter seenPackets;         // all that came, of whatever kind
    Counter malformedPackets;    // those that say nothing valid
    Counter deliveredPackets;    // in frames that are complete
    Counter lostPackets;         // missing in frames that were given up
    Counter resendCommands;      // requests to send packets again
    Counter resendPackets;       // packets asked for in them
    Counter resentPackets;       // packets that came because they were asked for
    Counter unavailablePackets;  // packets that the camera refused to send again
    Counter duplicatePackets;
    Counter latePackets;  // of blocks that are over, or that have no buffer

    Counter completeBlocks;    // delivered whole
    Counter incompleteBlocks;  // given up: delivered with a flag, or dropped
    Counter discardedBlocks;   // dropped of these
    Counter oversizedBlocks;   // larger than their buffer
    Counter skippedBlocks;     // of which nothing came
    Counter engineUnderruns;   // without a buffer
    Counter receivedBytes;     // of payload
};

}  // namespace ZelGev
