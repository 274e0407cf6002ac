#include "producers/gigevision/stream/streamsocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <netinet/udp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/filter.h>
#include <linux/sock_diag.h>

#include "producers/server/base/error.h"

namespace ZelGev {

using ZelCti::Error;

namespace {

[[noreturn]] void RefuseSocket(const char* what, int reason) {
    throw Error(reason == EADDRINUSE ? GenTL::GC_ERR_RESOURCE_IN_USE : GenTL::GC_ERR_IO,
                std::string("socket of a stream: ") + what + ": " + std::strerror(reason));
}

sockaddr_in NativeAddress(uint32_t address, uint16_t port) {
    sockaddr_in native{};
    native.sin_family = AF_INET;
    native.sin_port = htons(port);
    native.sin_addr.s_addr = htonl(address);
    return native;
}

// Some options are refused by old kernels or need rights, and the reception works without them.
bool TrySetting(int descriptor, int level, int option, int value) {
    return setsockopt(descriptor, level, option, &value, sizeof value) == 0;
}

// Lets in what comes from there only, and nothing from 0. A filter in the kernel costs less than
// asking each datagram for its sender.
bool Filter(int descriptor, uint32_t sender) {
    constexpr uint32_t kSourceAddress = 12;  // in the header of IP
    constexpr auto kNetworkHeader = static_cast<uint32_t>(SKF_NET_OFF);
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNetworkHeader + kSourceAddress),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, sender, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, UINT32_MAX),
        BPF_STMT(BPF_RET | BPF_K, 0),
    }};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return setsockopt(descriptor, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter) == 0;
}

}  // namespace

StreamSocket::StreamSocket(const Place& place)
    : descriptor_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)), camera_(place.camera) {
    if (descriptor_ < 0) RefuseSocket("socket", errno);
    try {
        Prepare(place);
    } catch (...) {
        close(descriptor_);
        throw;
    }
}

StreamSocket::~StreamSocket() {
    close(descriptor_);
}

void StreamSocket::Prepare(const Place& place) {
    if (camera_ != 0 && !SetClosed(false)) RefuseSocket("filter", errno);
    TrySetting(descriptor_, IPPROTO_IP, IP_MULTICAST_ALL, 0);
    SetBufferSize(kDefaultBuffer);
    const timeval longest{0, kLongestWait.count()};
    setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
    if (place.group != 0) TrySetting(descriptor_, SOL_SOCKET, SO_REUSEADDR, 1);
    const sockaddr_in local =
        NativeAddress(place.group != 0 ? place.group : place.address, place.port);
    if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0)
        RefuseSocket("bind", errno);
    if (place.group != 0) Join(place);
}

void StreamSocket::Join(const Place& place) const {
    ip_mreq membership{};
    membership.imr_multiaddr.s_addr = htonl(place.group);
    membership.imr_interface.s_addr = htonl(place.address);
    if (setsockopt(descriptor_, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership) != 0)
        RefuseSocket("joining the multicast group", errno);
}

uint16_t StreamSocket::Port() const {
    sockaddr_in local{};
    socklen_t size = sizeof local;
    if (getsockname(descriptor_, reinterpret_cast<sockaddr*>(&local), &size) != 0) return 0;
    return ntohs(local.sin_port);
}

void StreamSocket::SetBufferSize(size_t wanted) {
    wantedBuffer_ = std::min(wanted, kMaxBuffer);
    const auto half = static_cast<int>(wantedBuffer_ / 2);  // the kernel doubles it
    if (!TrySetting(descriptor_, SOL_SOCKET, SO_RCVBUFFORCE, half))
        TrySetting(descriptor_, SOL_SOCKET, SO_RCVBUF, half);
}

size_t StreamSocket::BufferSize() const {
    int size = 0;
    socklen_t length = sizeof size;
    getsockopt(descriptor_, SOL_SOCKET, SO_RCVBUF, &size, &length);
    return static_cast<size_t>(size);
}

uint32_t StreamSocket::NumDropped() const {
    std::array<uint32_t, SK_MEMINFO_VARS> memory{};
    socklen_t length = sizeof memory;
    getsockopt(descriptor_, SOL_SOCKET, SO_MEMINFO, memory.data(), &length);
    return memory[SK_MEMINFO_DROPS];
}

std::string StreamSocket::BufferAdvice() const {
    const size_t size = BufferSize();
    if (size >= wantedBuffer_) return {};
    return "The system limits the receive buffer to " + std::to_string(size) +
           " bytes, and short delays may cost packets. As root: sysctl -w net.core.rmem_max=" +
           std::to_string(wantedBuffer_);
}

void StreamSocket::JoinPackets(bool on) const {
    TrySetting(descriptor_, IPPROTO_UDP, UDP_GRO, on ? 1 : 0);
}

bool StreamSocket::SetClosed(bool closed) const {
    if (closed) return Filter(descriptor_, 0);
    if (camera_ != 0) return Filter(descriptor_, camera_);
    return TrySetting(descriptor_, SOL_SOCKET, SO_DETACH_FILTER, 0) || errno == ENOENT;
}

bool StreamSocket::Send(const ZelCti::Endpoint& to, ZelCti::ByteView datagram) const {
    const sockaddr_in native = NativeAddress(to.address, to.port);
    return sendto(descriptor_, datagram.data, datagram.size, MSG_DONTWAIT,
                  reinterpret_cast<const sockaddr*>(&native),
                  sizeof native) == static_cast<ssize_t>(datagram.size);
}

void StreamSocket::OpenFirewall(const ZelCti::Endpoint& camera) const {
    const uint8_t anything = 0;
    if (camera.port != 0) Send(camera, {&anything, sizeof anything});
}

void StreamSocket::Drain() const {
    constexpr int kAtMost = 1 << 20;  // whatever comes in meanwhile
    for (int i = 0; i < kAtMost; ++i) {
        if (recv(descriptor_, nullptr, 0, MSG_DONTWAIT | MSG_TRUNC) < 0 && errno != EINTR) return;
    }
}

}  // namespace ZelGev
