#include "producers/sockets/udpsocket.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"

namespace ZelCti {

namespace {

sockaddr_in NativeOf(const Endpoint& endpoint) {
    sockaddr_in native{};
    native.sin_family = AF_INET;
    native.sin_port = htons(endpoint.port);
    native.sin_addr.s_addr = htonl(endpoint.address);
    return native;
}

Endpoint EndpointOf(const sockaddr_in& native) {
    return {ntohl(native.sin_addr.s_addr), ntohs(native.sin_port)};
}

[[noreturn]] void Refuse(const Endpoint& local, int error) {
    const auto code = error == EADDRINUSE ? GenTL::GC_ERR_RESOURCE_IN_USE : GenTL::GC_ERR_IO;
    throw Error(code, IpAddressText(local.address) + ":" + std::to_string(local.port) + ": " +
                          std::strerror(error));
}

bool SwitchOn(int descriptor, int level, int option) {
    const int on = 1;
    return setsockopt(descriptor, level, option, &on, sizeof on) == 0;
}

bool Prepare(int descriptor, const Endpoint& local, const std::string& device, bool shared) {
    if (!SwitchOn(descriptor, IPPROTO_IP, IP_PKTINFO)) return false;
    if (!SwitchOn(descriptor, SOL_SOCKET, SO_BROADCAST)) return false;
    if (shared && !SwitchOn(descriptor, SOL_SOCKET, SO_REUSEADDR)) return false;
    const auto length = static_cast<socklen_t>(device.size());
    if (!device.empty() &&
        setsockopt(descriptor, SOL_SOCKET, SO_BINDTODEVICE, device.data(), length) != 0)
        return false;
    const sockaddr_in native = NativeOf(local);
    return bind(descriptor, reinterpret_cast<const sockaddr*>(&native), sizeof native) == 0;
}

// 0 when the system does not say it, which no interface has.
unsigned InterfaceOf(msghdr& message) {
    for (cmsghdr* c = CMSG_FIRSTHDR(&message); c != nullptr; c = CMSG_NXTHDR(&message, c)) {
        if (c->cmsg_level != IPPROTO_IP || c->cmsg_type != IP_PKTINFO) continue;
        in_pktinfo info{};
        std::memcpy(&info, CMSG_DATA(c), sizeof info);
        return static_cast<unsigned>(info.ipi_ifindex);
    }
    return 0;
}

}  // namespace

UdpSocket::UdpSocket(const Endpoint& local, const std::string& device, bool shared)
    : descriptor_(socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
    if (descriptor_ < 0) Refuse(local, errno);
    if (Prepare(descriptor_, local, device, shared)) return;
    const int error = errno;
    close(descriptor_);
    Refuse(local, error);
}

UdpSocket::~UdpSocket() {
    close(descriptor_);
}

uint16_t UdpSocket::Port() const {
    sockaddr_in native{};
    socklen_t size = sizeof native;
    if (getsockname(descriptor_, reinterpret_cast<sockaddr*>(&native), &size) != 0) return 0;
    return ntohs(native.sin_port);
}

std::optional<UdpSocket::Datagram> UdpSocket::Receive(ByteSpan memory) {
    iovec place{memory.data, memory.size};
    sockaddr_in from{};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(in_pktinfo))> control{};
    msghdr message{};
    message.msg_name = &from;
    message.msg_namelen = sizeof from;
    message.msg_iov = &place;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    for (;;) {
        const ssize_t size = recvmsg(descriptor_, &message, MSG_TRUNC);
        if (size >= 0) {
            return Datagram{static_cast<size_t>(size), EndpointOf(from), InterfaceOf(message)};
        }
        // Another host may have refused a datagram that was sent: the next one is waiting still.
        if (errno != EINTR && errno != ECONNREFUSED) return std::nullopt;
    }
}

bool UdpSocket::Send(const Endpoint& to, ByteView datagram) {
    const sockaddr_in native = NativeOf(to);
    const ssize_t sent = sendto(descriptor_, datagram.data, datagram.size, 0,
                                reinterpret_cast<const sockaddr*>(&native), sizeof native);
    return sent == static_cast<ssize_t>(datagram.size);
}

}  // namespace ZelCti
