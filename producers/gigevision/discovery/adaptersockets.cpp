#include "producers/gigevision/discovery/adaptersockets.h"

#include <array>
#include <sys/socket.h>

#include "producers/server/base/error.h"
#include "producers/wire/gvcp.h"

namespace ZelGev {

using ZelCti::ByteView;
using ZelCti::Error;

namespace {

constexpr uint32_t kEverybody = 0xFFFFFFFF;
constexpr uint16_t kCameraPort = ZelCti::Gvcp::kPort;

// Where more than 20 cameras answer at once, the usual buffer is too small.
constexpr int kReceiveBuffer = 1 << 20;

// A datagram that is longer is no answer.
constexpr size_t kMaxDatagram = 1024;

// One call reads at most so many: whoever floods a socket does not keep the caller for ever.
constexpr int kMaxDatagrams = 10000;

}  // namespace

AdapterSockets::AdapterSockets(const NetworkAdapter& adapter) : adapter_(adapter) {
    for (const Subnet& subnet : adapter_.subnets)
        Open(subnet);
    if (!sockets_.empty() && !adapter_.isPointToPoint) Open({});
}

void AdapterSockets::Open(const Subnet& subnet) {
    try {
        sockets_.emplace_back(subnet, adapter_.name);
    } catch (const Error&) {
        return;  // the address has just gone, or the system lets nobody choose an adapter
    }
    setsockopt(sockets_.back().socket.Descriptor(), SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer,
               sizeof kReceiveBuffer);
}

void AdapterSockets::Broadcast(ByteView command, ByteView toAll) {
    if (adapter_.isPointToPoint) return;
    for (Socket& socket : sockets_) {
        const bool isForAll = socket.subnet.address == 0;
        socket.socket.Send({kEverybody, kCameraPort}, isForAll ? toAll : command);
        if (!isForAll && socket.subnet.HasBroadcast()) {
            socket.socket.Send({socket.subnet.Broadcast(), kCameraPort}, command);
        }
    }
}

void AdapterSockets::Send(uint32_t to, ByteView command, uint32_t from) {
    const Subnet* const subnet = adapter_.SubnetOf(to);
    const uint32_t address = subnet != nullptr ? subnet->address : from;
    if (sockets_.empty()) return;
    Socket* chosen = &sockets_.front();
    for (Socket& socket : sockets_)
        if (socket.subnet.address == address) chosen = &socket;
    chosen->socket.Send({to, kCameraPort}, command);
}

void AdapterSockets::ReceiveAll(const OnDatagram& onDatagram) {
    std::array<uint8_t, kMaxDatagram> memory;
    for (Socket& socket : sockets_) {
        for (int i = 0; i < kMaxDatagrams; ++i) {
            const auto datagram = socket.socket.Receive({memory.data(), memory.size()});
            if (!datagram) break;
            if (datagram->size > memory.size()) continue;
            onDatagram(datagram->from, {memory.data(), datagram->size});
        }
    }
}

std::vector<int> AdapterSockets::Descriptors() const {
    std::vector<int> descriptors;
    for (const Socket& socket : sockets_)
        descriptors.push_back(socket.socket.Descriptor());
    return descriptors;
}

}  // namespace ZelGev
