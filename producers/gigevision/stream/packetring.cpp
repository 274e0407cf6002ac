#include "producers/gigevision/stream/packetring.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/filter.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>

namespace ZelGev {

namespace Gvsp = ZelCti::Gvsp;
using ZelCti::ByteView;

namespace {

// How long packets wait for others in a block that is not full: the least that kernels can.
constexpr std::chrono::duration<int, std::milli> kBlockPatience{1};

// In the headers of IP and UDP.
constexpr size_t kLengthOffset = 2;
constexpr size_t kFragmentOffset = 6;
constexpr size_t kProtocolOffset = 9;
constexpr size_t kSourceOffset = 12;
constexpr size_t kDestinationOffset = 16;
constexpr size_t kPortOffset = 2;  // of the destination, in the header of UDP
constexpr uint16_t kMoreFragments = 0x2000;
constexpr uint16_t kFragmentPlace = 0x1FFF;
constexpr size_t kUdpHeaderSize = 8;

// The datagrams of a flow, and of those that come in fragments the first ones. The packet begins
// with the header of IP.
bool FilterFlow(int descriptor, const PacketRing::Flow& flow) {
    constexpr auto kPacketType = static_cast<uint32_t>(SKF_AD_OFF + SKF_AD_PKTTYPE);
    std::array<sock_filter, 15> program{{
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, kPacketType),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, PACKET_OTHERHOST, 12, 0),
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, kProtocolOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 10),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kSourceOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, flow.camera, 0, 8),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kDestinationOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, flow.destination, 0, 6),
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, kFragmentOffset),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, kFragmentPlace, 4, 0),
        BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),
        BPF_STMT(BPF_LD | BPF_H | BPF_IND, kPortOffset),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, flow.port, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, UINT32_MAX),
        BPF_STMT(BPF_RET | BPF_K, 0),
    }};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return setsockopt(descriptor, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter) == 0;
}

template <typename Value>
bool Set(int descriptor, int option, const Value& value) {
    return setsockopt(descriptor, SOL_PACKET, option, &value, sizeof value) == 0;
}

// The word that says whose a block is: the kernel's, or ours to read.
bool IsOurs(const tpacket_block_desc& block) {
    return (__atomic_load_n(&block.hdr.bh1.block_status, __ATOMIC_ACQUIRE) & TP_STATUS_USER) != 0;
}

void GiveBack(tpacket_block_desc& block) {
    __atomic_store_n(&block.hdr.bh1.block_status, TP_STATUS_KERNEL, __ATOMIC_RELEASE);
}

// Packets are in no cache near by, and processors do not guess where the next one begins. What lies
// behind a block's last packet does no harm.
void Prefetch(const uint8_t* packet) {
    constexpr size_t kCacheLine = 64;
    constexpr size_t kBegin = 8 * kCacheLine;
    for (size_t i = 0; i < kBegin; i += kCacheLine)
        __builtin_prefetch(packet + i);
}

// The packet that the bytes from there on are, if it comes soon behind the first one.
std::optional<Gvsp::Header> NextAt(ByteView bytes, size_t offset, const Gvsp::Header& first) {
    constexpr uint32_t kMostJoined = 128;
    if (offset == 0 || offset >= bytes.size) return std::nullopt;
    const auto next = Gvsp::DecodePacket(bytes.From(offset));
    if (!next || next->header.extended != first.extended || next->header.blockId != first.blockId)
        return std::nullopt;
    const uint32_t distance = next->header.packetId - first.packetId;
    if (distance == 0 || distance >= kMostJoined) return std::nullopt;
    return next->header;
}

// The size of the first packet where several of a block may be joined, which the ring does not say:
// full ones, behind which others stand, or the last data with the trailer behind them.
size_t SizeOfFirst(ByteView bytes, size_t fullSize) {
    constexpr size_t kLongestTrailer = 64;
    if (bytes.size == fullSize) return fullSize;
    const auto first = Gvsp::DecodePacket(bytes);
    if (!first) return bytes.size;
    if (NextAt(bytes, fullSize, first->header)) return fullSize;
    const size_t headerSize = Gvsp::HeaderSize(first->header.extended);
    for (size_t tail = Gvsp::kTrailerCommonSize; tail <= kLongestTrailer; tail += 4) {
        const size_t offset = bytes.size - std::min(bytes.size, headerSize + tail);
        const auto trailer = NextAt(bytes, offset, first->header);
        if (trailer && trailer->format == Gvsp::PacketFormat::Trailer &&
            trailer->packetId == first->header.packetId + 1)
            return offset;
    }
    return bytes.size;
}

}  // namespace

std::unique_ptr<PacketRing> PacketRing::Open(const Flow& flow, size_t size) {
    // Without a protocol nothing comes before the filter is there.
    const int descriptor = socket(AF_PACKET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return nullptr;
    std::unique_ptr<PacketRing> ring(new PacketRing(descriptor, flow.packetSize));
    if (!ring->Prepare(flow, size)) return nullptr;
    return ring;
}

PacketRing::~PacketRing() {
    if (memory_ != nullptr) munmap(memory_, numBlocks_ * kBlockSize);
    close(descriptor_);
}

bool PacketRing::Prepare(const Flow& flow, size_t size) {
    if (flow.camera == 0 || flow.packetSize <= Gvsp::kIpUdpHeaderSize) return false;
    const size_t numBlocks = std::max<size_t>(4, size / kBlockSize);
    tpacket_req3 request{};
    request.tp_block_size = kBlockSize;
    request.tp_block_nr = static_cast<unsigned>(numBlocks);
    request.tp_frame_size = kBlockSize;  // means nothing: packets lie behind one another
    request.tp_frame_nr = request.tp_block_nr;
    request.tp_retire_blk_tov = static_cast<unsigned>(kBlockPatience.count());
    if (!Set(descriptor_, PACKET_VERSION, int{TPACKET_V3}) || !FilterFlow(descriptor_, flow) ||
        !Set(descriptor_, PACKET_RX_RING, request))
        return false;
    void* const memory =
        mmap(nullptr, numBlocks * kBlockSize, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_, 0);
    if (memory == MAP_FAILED) return false;
    memory_ = static_cast<uint8_t*>(memory);
    numBlocks_ = numBlocks;
    // Of all adapters: as IP gets the datagrams, after bridges and virtual networks.
    sockaddr_ll local{};
    local.sll_family = AF_PACKET;
    local.sll_protocol = htons(ETH_P_IP);
    return bind(descriptor_, reinterpret_cast<const sockaddr*>(&local), sizeof local) == 0;
}

bool PacketRing::Read(PacketSink& sink, bool /*mayWait*/) {
    uint8_t* const begin = memory_ + next_ * kBlockSize;
    auto& block = *reinterpret_cast<tpacket_block_desc*>(begin);
    if (!IsOurs(block)) return false;
    size_t offset = block.hdr.bh1.offset_to_first_pkt;
    for (uint32_t i = 0; i < block.hdr.bh1.num_pkts; ++i) {
        const auto& header = *reinterpret_cast<const tpacket3_hdr*>(begin + offset);
        Prefetch(begin + offset + header.tp_next_offset);
        if (header.tp_snaplen == header.tp_len) {
            OnDatagram(sink, {begin + offset + header.tp_net, header.tp_snaplen});
        } else {
            fits_ = false;  // larger than a block
        }
        offset += header.tp_next_offset;
    }
    GiveBack(block);
    next_ = (next_ + 1) % numBlocks_;
    return true;
}

// The filter has seen that it is one of UDP and of the camera.
void PacketRing::OnDatagram(PacketSink& sink, ByteView datagram) {
    if (datagram.size < Gvsp::kIpUdpHeaderSize) return;
    constexpr size_t kWord = 4;
    constexpr uint8_t kHeaderWords = 0x0F;
    const size_t headers = (datagram.U8(0) & kHeaderWords) * kWord + kUdpHeaderSize;
    const size_t size = std::min<size_t>(datagram.U16(kLengthOffset), datagram.size);
    if ((datagram.U16(kFragmentOffset) & kMoreFragments) != 0 || size < headers) {
        fits_ = false;
        return;
    }
    ByteView rest = datagram.Sub(headers, size - headers);
    const size_t fullSize = packetSize_ - Gvsp::kIpUdpHeaderSize;
    for (;;) {
        const size_t next = SizeOfFirst(rest, fullSize);
        HandOver(sink, rest.Sub(0, next));
        if (next == rest.size) return;
        fits_ = false;
        rest = rest.From(next);
    }
}

void PacketRing::ReadRest(PacketSink& sink) {
    const auto end = std::chrono::steady_clock::now() + 2 * kBlockPatience;
    do {
        pollfd descriptor{descriptor_, POLLIN, 0};
        poll(&descriptor, 1, kBlockPatience.count());
        while (Read(sink, false)) {
        }
    } while (std::chrono::steady_clock::now() < end);
}

uint64_t PacketRing::NumDropped() const {
    tpacket_stats_v3 statistics{};
    socklen_t length = sizeof statistics;
    // Asking for the count sets it to 0.
    if (getsockopt(descriptor_, SOL_PACKET, PACKET_STATISTICS, &statistics, &length) == 0)
        numDropped_ += statistics.tp_drops;
    return numDropped_;
}

}  // namespace ZelGev
