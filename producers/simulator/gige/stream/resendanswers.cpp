#include "producers/simulator/gige/stream/resendanswers.h"

#include <algorithm>

#include "producers/wire/gvsppackets.h"

namespace ZelSim {

using ZelCti::Gev::Status;
using ZelCti::Gvcp::PacketResend;

namespace {

// The end of the block, in a request.
uint32_t AllOnes(const PacketResend& request) {
    return request.extendedIds ? 0xFFFFFFFF : 0xFFFFFF;
}

}  // namespace

std::optional<PacketRange> AnsweredPackets(const PacketResend& request,
                                           std::optional<uint32_t> count) {
    if (request.firstPacket > request.lastPacket) return std::nullopt;
    uint32_t last = request.lastPacket;
    if (count && last == AllOnes(request) && request.firstPacket < *count) last = *count - 1;
    const uint64_t afterLast = std::max<uint64_t>(request.firstPacket, count.value_or(0));
    const uint64_t most = afterLast + kMostRefusals - 1;
    return PacketRange{request.firstPacket, static_cast<uint32_t>(std::min<uint64_t>(last, most))};
}

std::optional<Status> ReasonAgainst(uint32_t packetId, uint32_t count, bool hasGone) {
    if (packetId >= count) return Status::PacketUnavailable;
    if (!hasGone) return Status::PacketNotYetAvailable;
    return std::nullopt;
}

Status ReasonAgainstBlock(uint64_t blockId, std::optional<uint64_t> oldest,
                          std::optional<uint64_t> newest, bool extendedIds) {
    const auto isAfter = [&](std::optional<uint64_t> other) {
        return !other || ZelCti::Gvsp::BlockIdDifference(*other, blockId, extendedIds) > 0;
    };
    if (blockId == 0 || isAfter(newest)) return Status::PacketUnavailable;
    return oldest && isAfter(oldest) ? Status::PacketRemovedFromMemory
                                     : Status::PacketAndPrevRemovedFromMemory;
}

Status StatusFor(Status reason, bool hasStatusCodes) {
    return hasStatusCodes ? reason : Status::PacketUnavailable;
}

}  // namespace ZelSim
