#include "producers/simulator/gige/stream/streamsocket.h"

#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <netinet/udp.h>
#include <poll.h>
#include <utility>

namespace ZelSim {

using ZelCti::Endpoint;
using ZelCti::UdpSocket;

namespace {

constexpr size_t kMaxSegments = 64;          // of a datagram that the kernel cuts
constexpr size_t kMaxDatagram = 65535 - 28;  // with its headers, IP allows 65,535 bytes
constexpr int kRoomTimeoutMs = 100;

// Whether a call failed because there is no room, and not because of what was to be sent.
bool IsFull(int reason) {
    return reason == EAGAIN || reason == ENOBUFS;
}

// What is sent from loopback stays there, wherever an application wants it to go.
std::string DeviceOf(uint32_t address) {
    constexpr uint32_t kLoopbackNetwork = 127;
    return address >> 24 == kLoopbackNetwork ? "lo" : "";
}

// What the kernel sends and receives may fail for reasons that harm nobody: an option that it does
// not know is left as it is.
void SetOption(const UdpSocket& socket, int level, int option, int value) {
    setsockopt(socket.Descriptor(), level, option, &value, sizeof value);
}

}  // namespace

StreamSocket::StreamSocket(uint32_t address)
    : socket_({address, 0}, DeviceOf(address), false), port_(socket_.Port()) {
    constexpr int kSendBuffer = 4 << 20;
    SetOption(socket_, SOL_SOCKET, SO_SNDBUF, kSendBuffer);
    // Receivers send datagrams here to open firewalls; nobody reads them.
    SetOption(socket_, SOL_SOCKET, SO_RCVBUF, 0);
    SetOption(socket_, IPPROTO_IP, IP_MULTICAST_TTL, 1);
    SetOption(socket_, IPPROTO_IP, IP_MTU_DISCOVER, IP_PMTUDISC_DONT);
    in_addr interface {};
    interface.s_addr = htonl(address);
    setsockopt(socket_.Descriptor(), IPPROTO_IP, IP_MULTICAST_IF, &interface, sizeof interface);
}

void StreamSocket::SetDontFragment(bool dontFragment) {
    if (dontFragment == dontFragment_) return;
    dontFragment_ = dontFragment;
    SetOption(socket_, IPPROTO_IP, IP_MTU_DISCOVER,
              dontFragment ? IP_PMTUDISC_DO : IP_PMTUDISC_DONT);
}

// The packets from the first on that one datagram can hold: all of one length, but for a shorter
// one at the end.
size_t StreamSocket::GroupSize(const PacketBytes* packets, size_t count) const {
    const size_t segment = packets[0].Size();
    if (!segmentation_ || segment >= leastUncut_) return 1;
    size_t bytes = segment;
    size_t size = 1;
    while (size < count && size < kMaxSegments && packets[size].Size() <= segment &&
           bytes + packets[size].Size() <= kMaxDatagram) {
        bytes += packets[size].Size();
        if (packets[size++].Size() < segment) break;
    }
    return size;
}

// Makes messages of packets and returns how many there are.
size_t StreamSocket::Fill(const Endpoint& to, const PacketBytes* packets, size_t count) {
    sockaddr_in destination{};
    destination.sin_family = AF_INET;
    destination.sin_addr.s_addr = htonl(to.address);
    destination.sin_port = htons(to.port);
    std::memcpy(&destination_, &destination, sizeof destination);

    size_t numMessages = 0;
    size_t numPieces = 0;
    for (size_t first = 0; first < count; ++numMessages) {
        const size_t group = GroupSize(packets + first, count - first);
        msghdr& header = messages_[numMessages].msg_hdr;
        header = {};
        header.msg_name = &destination_;
        header.msg_namelen = sizeof destination;
        header.msg_iov = &pieces_[numPieces];
        for (size_t i = first; i < first + group; ++i) {
            for (const ZelCti::ByteView piece : packets[i].pieces) {
                if (piece.size == 0) continue;
                // The kernel only reads what it sends.
                pieces_[numPieces++] = {const_cast<uint8_t*>(piece.data), piece.size};
                ++header.msg_iovlen;
            }
        }
        if (group > 1) {
            Control& control = controls_[numMessages];
            control = {};
            header.msg_control = control.bytes.data();
            header.msg_controllen = control.bytes.size();
            cmsghdr* const segment = CMSG_FIRSTHDR(&header);
            segment->cmsg_level = IPPROTO_UDP;
            segment->cmsg_type = UDP_SEGMENT;
            segment->cmsg_len = CMSG_LEN(sizeof(uint16_t));
            const auto size = static_cast<uint16_t>(packets[first].Size());
            std::memcpy(CMSG_DATA(segment), &size, sizeof size);
        }
        groups_[numMessages] = group;
        first += group;
    }
    return numMessages;
}

bool StreamSocket::AwaitRoom() const {
    pollfd descriptor{socket_.Descriptor(), POLLOUT, 0};
    return poll(&descriptor, 1, kRoomTimeoutMs) > 0;
}

// The kernel cuts no datagram into packets that are larger than the MTU, and old ones cut none.
// Such packets are sent singly until others go elsewhere.
size_t StreamSocket::Send(const Endpoint& to, const PacketBytes* packets, size_t count) {
    if (std::exchange(last_, to) != to) leastUncut_ = SIZE_MAX;
    size_t numSent = 0;
    size_t numDone = 0;
    while (numDone < count) {
        const size_t numMessages = Fill(to, packets + numDone, count - numDone);
        const int sent =
            sendmmsg(socket_.Descriptor(), messages_.data(), static_cast<unsigned>(numMessages), 0);
        if (sent > 0) {
            for (size_t i = 0; i < static_cast<size_t>(sent); ++i) {
                numSent += groups_[i];
                numDone += groups_[i];
            }
            continue;
        }
        const int reason = errno;
        if (reason == EINTR || (reason == EAGAIN && AwaitRoom())) continue;
        if (groups_[0] > 1 && !IsFull(reason)) {
            leastUncut_ = packets[numDone].Size();
        } else {
            numDone += groups_[0];
        }
    }
    return numSent;
}

}  // namespace ZelSim
