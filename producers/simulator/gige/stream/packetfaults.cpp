#include "producers/simulator/gige/stream/packetfaults.h"

#include <algorithm>

namespace ZelSim {

namespace {

// Whether this is the n-th, 2n-th, ... of a count that begins with 1; never for 0.
bool IsNth(uint64_t n, uint64_t count) {
    return n != 0 && count % n == 0;
}

}  // namespace

uint32_t PacketAt(uint32_t place, uint32_t count, uint32_t reorder) {
    constexpr uint32_t kGroup = 16;
    if (reorder == 0 || reorder >= count) return place;
    const uint32_t group = std::max(kGroup, reorder + 2);
    const uint32_t begin = place / group * group;
    const uint32_t late = begin + 1;  // the packet that comes later
    const uint32_t lateAt = late + reorder;
    if (lateAt >= count || place < late || place > lateAt) return place;
    return place == lateAt ? late : place + 1;
}

void PacketFaults::Restart(const NetworkSettings& settings) {
    *this = {};
    random_.seed(settings.lossSeed);
}

void PacketFaults::BeginBlock(const NetworkSettings& settings, uint32_t numPackets) {
    if (settings.lossSeed != settings_.lossSeed) random_.seed(settings.lossSeed);
    settings_ = settings;
    numPackets_ = numPackets;
    ++numBlocks_;
}

bool PacketFaults::IsInLostPart(uint32_t packetId) const {
    const bool isTrailer = packetId + 1 == numPackets_;
    return IsNth(settings_.loseBlocks, numBlocks_) ||
           (packetId == 0 && IsNth(settings_.loseLeaders, numBlocks_)) ||
           (isTrailer && IsNth(settings_.loseTrailers, numBlocks_)) ||
           (packetId >= numPackets_ / 2 && IsNth(settings_.loseTails, numBlocks_));
}

double PacketFaults::Random() {
    return std::uniform_real_distribution<double>(0, 1)(random_);
}

bool PacketFaults::IsLostOnTheWay(const NetworkSettings& settings, size_t ipSize) {
    if (settings.pathMtu != 0 && ipSize > settings.pathMtu) return true;
    ++numOnTheWay_;
    if (lossLeft_ == 0) {
        const bool begins = IsNth(settings.lossEvery, numOnTheWay_) ||
                            (settings.lossRate > 0 && Random() < settings.lossRate);
        if (!begins) return false;
        lossLeft_ = std::max<uint32_t>(settings.lossBurst, 1);
    }
    --lossLeft_;
    return true;
}

PacketFate PacketFaults::FateOf(uint32_t packetId, size_t ipSize) {
    // In the middle: a leader or a trailer would be another fault.
    constexpr uint32_t kLeastForLate = 3;
    ++numSent_;
    PacketFate fate;
    fate.isLost = IsLostOnTheWay(settings_, ipSize) || IsInLostPart(packetId);
    fate.isLate = numPackets_ >= kLeastForLate && packetId == numPackets_ / 2 &&
                  IsNth(settings_.lateBlocks, numBlocks_);
    fate.comesTwice = IsNth(settings_.duplicateEvery, numSent_);
    fate.hasWrongStatus = IsNth(settings_.wrongStatusEvery, numSent_);
    fate.hasWrongBlockId = IsNth(settings_.wrongBlockIdEvery, numSent_);
    return fate;
}

bool PacketFaults::IsResentLost(const NetworkSettings& settings, size_t ipSize) {
    if (settings.loseResent) return IsLostOnTheWay(settings, ipSize);
    return settings.pathMtu != 0 && ipSize > settings.pathMtu;
}

}  // namespace ZelSim
