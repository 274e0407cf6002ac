// Sockets for datagrams.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "producers/sockets/endpoint.h"
#include "producers/wire/byteview.h"

namespace ZelCti {

// A UDP socket of IPv4 that never waits. Reentrant.
class UdpSocket {
  public:
    // Receives what is sent to this address and port, 0 for any free one. With a `device`, only
    // what comes in there, and what it sends leaves there. A `shared` one leaves the same address
    // and port to others as well, as sockets for broadcasts must. Throws GC_ERR_IO, or
    // GC_ERR_RESOURCE_IN_USE when another program uses the address and the port.
    UdpSocket(const Endpoint& local, const std::string& device, bool shared);
    ~UdpSocket();
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    int Descriptor() const { return descriptor_; }  // for poll
    uint16_t Port() const;

    struct Datagram {
        size_t size;  // larger than the memory when it was cut
        Endpoint from;
        unsigned interface;  // the index of that on which it came in
    };

    // The next datagram; none when there is none now.
    std::optional<Datagram> Receive(ByteSpan memory);

    // False when it could not be sent: datagrams may get lost.
    bool Send(const Endpoint& to, ByteView datagram);

  private:
    int descriptor_;
};

}  // namespace ZelCti
