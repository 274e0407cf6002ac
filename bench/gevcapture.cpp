#include "bench/gevcapture.h"

#include <array>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/filter.h>
#include <linux/if_ether.h>
#include <net/if.h>
#include <netpacket/packet.h>

#include "producers/wire/gvcp.h"
#include "producers/wire/gvsp.h"

namespace Bench {

namespace Gvcp = ZelCti::Gvcp;
namespace Gvsp = ZelCti::Gvsp;

namespace {

// Of frames of Ethernet with IPv4 without options.
constexpr uint32_t kType = 12;
constexpr uint32_t kProtocol = 23;
constexpr uint32_t kSourcePort = 34;
constexpr uint32_t kDestinationPort = 36;
constexpr uint32_t kData = 42;
constexpr uint32_t kFormat = kData + 4;  // in the header of GVSP
constexpr size_t kMostBytes = 128;

// UDP to the control port, and trailers from any other port.
void Select(int socket) {
    constexpr auto kTrailer = static_cast<uint32_t>(Gvsp::PacketFormat::Trailer);
    std::array<sock_filter, 13> program{{
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, kType),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, ETH_P_IP, 0, 10),
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, kProtocol),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, IPPROTO_UDP, 0, 8),
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, kDestinationPort),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, Gvcp::kPort, 5, 0),
        BPF_STMT(BPF_LD | BPF_H | BPF_ABS, kSourcePort),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, Gvcp::kPort, 4, 0),
        BPF_STMT(BPF_LD | BPF_B | BPF_ABS, kFormat),
        BPF_STMT(BPF_ALU | BPF_AND | BPF_K, 0x7F),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kTrailer, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, kMostBytes),
        BPF_STMT(BPF_RET | BPF_K, 0),
    }};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    if (setsockopt(socket, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter) != 0)
        throw std::runtime_error("a filter of packets is refused");
}

}  // namespace

GevCapture::GevCapture(const BenchNetwork& network) {
    RunAt(network.camera, kSenderProcessor, [&] { Open(); });
    thread_ = std::thread([this] { Run(); });
}

GevCapture::~GevCapture() {
    isEnding_ = true;
    thread_.join();
    close(socket_);
}

std::optional<int64_t> GevCapture::FirstMessage() const {
    const std::lock_guard lock(mutex_);
    return firstMessage_;
}

std::map<uint64_t, int64_t> GevCapture::Trailers() const {
    const std::lock_guard lock(mutex_);
    return trailers_;
}

// Without a protocol nothing comes before the filter is there.
void GevCapture::Open() {
    socket_ = socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0);
    if (socket_ < 0) throw std::runtime_error("packets cannot be captured");
    Select(socket_);
    const int on = 1;
    setsockopt(socket_, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
    const timeval patience{0, 50000};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    address.sll_protocol = htons(ETH_P_ALL);
    address.sll_ifindex = static_cast<int>(if_nametoindex("eth0"));
    if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("packets of eth0 cannot be captured");
}

void GevCapture::Run() {
    while (!isEnding_) {
        std::array<uint8_t, kMostBytes> frame{};
        alignas(cmsghdr) std::array<uint8_t, CMSG_SPACE(sizeof(timespec))> control{};
        iovec piece{frame.data(), frame.size()};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t size = recvmsg(socket_, &message, 0);
        const cmsghdr* const header = CMSG_FIRSTHDR(&message);
        if (size <= 0 || header == nullptr) continue;
        timespec time{};
        std::memcpy(&time, CMSG_DATA(header), sizeof time);
        Look(frame.data(), static_cast<size_t>(size),
             int64_t{time.tv_sec} * 1000000000 + time.tv_nsec);
    }
}

void GevCapture::Look(const uint8_t* frame, size_t size, int64_t time) {
    if (size <= kData) return;
    const std::lock_guard lock(mutex_);
    const bool isMessage =
        (frame[kDestinationPort] << 8 | frame[kDestinationPort + 1]) == Gvcp::kPort;
    if (isMessage) {
        if (!firstMessage_) firstMessage_ = time;
        return;
    }
    const auto packet = Gvsp::DecodePacket({frame + kData, size - kData});
    if (packet) trailers_.try_emplace(packet->header.blockId, time);
}

}  // namespace Bench
