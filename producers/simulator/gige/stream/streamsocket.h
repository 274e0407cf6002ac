// The socket of a stream channel.
#pragma once

#include <array>
#include <cstdint>
#include <sys/socket.h>
#include <sys/uio.h>

#include "producers/simulator/gige/stream/blockpackets.h"
#include "producers/sockets/udpsocket.h"

namespace ZelSim {

// Sends packets from a port of its own, many with each system call. If told to, and where it can,
// the kernel cuts a large datagram into packets of the same length (UDP_SEGMENT), which saves most
// of the time of sending; but within a machine, on loopback and virtual cables, it cuts them as
// late as at the socket that gets them, so that packet sockets and captures see datagrams that no
// camera sends. Reentrant.
class StreamSocket {
  public:
    static constexpr size_t kMaxPackets = 128;  // of a call

    // Sends from this address of the machine. Throws as UdpSocket.
    explicit StreamSocket(uint32_t address);

    uint16_t Port() const { return port_; }

    // Packets larger than the way allows are lost, or else fragmented.
    void SetDontFragment(bool dontFragment);

    // Whether the kernel may cut large datagrams into packets; at first it does not.
    void SetSegmentation(bool segmentation) { segmentation_ = segmentation; }

    // Sends kMaxPackets at most, and waits while the socket has no room. A packet that cannot be
    // sent is lost. Returns how many were sent.
    size_t Send(const ZelCti::Endpoint& to, const PacketBytes* packets, size_t count);

  private:
    struct Control {
        alignas(cmsghdr) std::array<uint8_t, CMSG_SPACE(sizeof(uint16_t))> bytes;
    };

    size_t Fill(const ZelCti::Endpoint& to, const PacketBytes* packets, size_t count);
    size_t GroupSize(const PacketBytes* packets, size_t count) const;
    bool AwaitRoom() const;

    ZelCti::UdpSocket socket_;
    const uint16_t port_;
    bool dontFragment_ = false;
    bool segmentation_ = false;
    size_t leastUncut_ = SIZE_MAX;  // packets of this size on are sent singly
    ZelCti::Endpoint last_;         // where the last packets went to
    sockaddr_storage destination_{};
    std::array<iovec, kMaxPackets * PacketBytes::kPieces> pieces_{};
    std::array<mmsghdr, kMaxPackets> messages_{};
    std::array<size_t, kMaxPackets> groups_{};  // packets of each message
    std::array<Control, kMaxPackets> controls_{};
};

}  // namespace ZelSim
