// How requests to send packets again are answered.
#pragma once

#include <cstdint>
#include <optional>

#include "producers/wire/gvcpcommands.h"
#include "producers/wire/gvsp.h"

namespace ZelSim {

// Packets of a request that are answered, the last included.
struct PacketRange {
    uint32_t first;
    uint32_t last;
};

// The most packets that one request gets refused: whoever asks for 2^32 packets that do not exist
// causes no more work than this.
constexpr uint32_t kMostRefusals = 16;

// The packets that a request gets answers for. Of a block of `count` packets all those that exist,
// and a few beyond; of a block that is not there (none) a few. None for a request that means no
// packet.
std::optional<PacketRange> AnsweredPackets(const ZelCti::Gvcp::PacketResend& request,
                                           std::optional<uint32_t> count);

// Why a packet of a block that is in memory is not sent again; none when it is. `hasGone` says
// whether it has been sent.
std::optional<ZelCti::Gev::Status> ReasonAgainst(uint32_t packetId, uint32_t count, bool hasGone);

// Why there is no such block. `newest` is the block that was begun last, `oldest` the first one in
// memory.
ZelCti::Gev::Status ReasonAgainstBlock(uint64_t blockId, std::optional<uint64_t> oldest,
                                       std::optional<uint64_t> newest, bool extendedIds);

// What a camera says whose extended status codes are off.
ZelCti::Gev::Status StatusFor(ZelCti::Gev::Status reason, bool hasStatusCodes);

}  // namespace ZelSim
