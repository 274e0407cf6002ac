// What goes wrong with the packets of a stream, as the switches of the camera say.
#pragma once

#include <cstdint>
#include <random>

#include "producers/simulator/config/networkswitches.h"

namespace ZelSim {

// The packet that is sent at this place of a block of so many packets: of each group of packets,
// one comes later by `reorder` places. Leaders stay where they are.
uint32_t PacketAt(uint32_t place, uint32_t count, uint32_t reorder);

// What happens to one packet.
struct PacketFate {
    bool isLost = false;
    bool isLate = false;  // not sent now, but after the next block
    bool comesTwice = false;
    bool hasWrongStatus = false;
    bool hasWrongBlockId = false;
};

// The faults of a channel: all of them depend on counts and a seed only, so that a run can be
// repeated. Thread-bound.
class PacketFaults {
  public:
    // The channel is opened.
    void Restart(const NetworkSettings& settings);

    // A block of so many packets begins; the settings hold for it.
    void BeginBlock(const NetworkSettings& settings, uint32_t numPackets);

    // The next packet of the block that is sent for the first time; `ipSize` in bytes.
    PacketFate FateOf(uint32_t packetId, size_t ipSize);

    // Whether the next packet that is sent again is lost.
    bool IsResentLost(const NetworkSettings& settings, size_t ipSize);

  private:
    bool IsInLostPart(uint32_t packetId) const;
    bool IsLostOnTheWay(const NetworkSettings& settings, size_t ipSize);
    double Random();

    NetworkSettings settings_;
    std::mt19937 random_;
    uint64_t numBlocks_ = 0;
    uint32_t numPackets_ = 0;  // of the block
    uint64_t numSent_ = 0;     // packets sent for the first time
    uint64_t numOnTheWay_ = 0;
    uint32_t lossLeft_ = 0;  // packets of a burst that are still to be lost
};

}  // namespace ZelSim
