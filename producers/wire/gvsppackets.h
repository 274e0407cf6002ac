// The arithmetic of GVSP: how blocks are cut into packets, and how their ids go on.
#pragma once

#include <algorithm>
#include <cassert>
#include <optional>

#include "producers/wire/gvsppayload.h"

namespace ZelCti::Gvsp {

// The data bytes of a full packet, 0 when the packet size register (which counts the IP datagram)
// leaves no room for any. Some cameras round the register down: a receiver trusts the first full
// packet more.
constexpr size_t DataPerPacket(size_t packetSize, bool extended, PacketFormat format) {
    const size_t headers = kIpUdpHeaderSize + HeaderSize(extended) + PrefixSize(format);
    return packetSize > headers ? packetSize - headers : 0;
}

// How many packets carry these bytes; perPacket is not 0.
constexpr uint64_t PacketsFor(uint64_t bytes, size_t perPacket) {
    return bytes / perPacket + (bytes % perPacket != 0 ? 1 : 0);
}

// Each part of a multi-part block begins a packet. perPacket is not 0.
template <typename Parts>
uint64_t PacketsForParts(const Parts& parts, size_t perPacket) {
    uint64_t packets = 0;
    for (const auto& part : parts)
        packets += PacketsFor(part.length, perPacket);
    return packets;
}

// The most packets of a block with its leader and its trailer. The last id of each kind is left
// out: resend requests use it for the end of the block (from memory).
constexpr uint64_t MaxPackets(bool extended) {
    return extended ? 0xFFFFFFFF : 0xFFFFFF;
}

// The packets of a block that is one run of bytes: all data packets but the last are full.
class PacketLayout {
  public:
    // None when a packet has no room for data, or the ids do not suffice.
    static constexpr std::optional<PacketLayout> Of(uint64_t size, size_t perPacket,
                                                    bool extended) {
        if (perPacket == 0 || PacketsFor(size, perPacket) > MaxPackets(extended) - 2)
            return std::nullopt;
        return PacketLayout(size, perPacket);
    }

    constexpr uint32_t DataPackets() const {
        return static_cast<uint32_t>(PacketsFor(size_, perPacket_));
    }
    constexpr uint32_t TrailerId() const { return DataPackets() + 1; }

    // Data packets have the ids from 1 to DataPackets().
    constexpr bool IsData(uint32_t packetId) const {
        return packetId != 0 && packetId <= DataPackets();
    }
    constexpr uint64_t OffsetOf(uint32_t packetId) const {
        assert(IsData(packetId));
        return uint64_t{packetId - 1} * perPacket_;
    }
    constexpr size_t SizeOf(uint32_t packetId) const {
        return static_cast<size_t>(std::min<uint64_t>(perPacket_, size_ - OffsetOf(packetId)));
    }

  private:
    constexpr PacketLayout(uint64_t size, size_t perPacket) : size_(size), perPacket_(perPacket) {}

    uint64_t size_;
    size_t perPacket_;
};

// The bytes of a picture as it lies in a block: each line begins a byte, and has its padding. Some
// cameras wrap packed formats over lines without a gap (from memory). None when 64 bits are too
// few.
std::optional<uint64_t> ImageSize(uint32_t pixelFormat, const Geometry& geometry);

// Block ids begin at 1. Those of 16 bits return to it after 65535: 0 is for test packets.
constexpr uint64_t NextBlockId(uint64_t id, bool extended) {
    const uint64_t last = extended ? UINT64_MAX : UINT16_MAX;
    return id >= last ? 1 : id + 1;
}

// By how many blocks `to` follows `from`, negative when it came before. 16-bit ids are a circle of
// 65,535, in which the shorter way counts.
constexpr int64_t BlockIdDifference(uint64_t from, uint64_t to, bool extended) {
    if (extended) return static_cast<int64_t>(to - from);
    constexpr int64_t kCircle = UINT16_MAX;
    const int64_t ahead = (static_cast<int64_t>(to & UINT16_MAX) -
                           static_cast<int64_t>(from & UINT16_MAX) + kCircle) %
                          kCircle;
    return ahead > kCircle / 2 ? ahead - kCircle : ahead;
}

}  // namespace ZelCti::Gvsp
