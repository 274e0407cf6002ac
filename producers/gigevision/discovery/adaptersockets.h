// The sockets through which cameras on a network adapter are asked.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "producers/gigevision/discovery/networkadapter.h"
#include "producers/sockets/udpsocket.h"
#include "producers/wire/byteview.h"

namespace ZelGev {

// One socket for each address of the adapter, and one for all: only that one receives the answers
// that cameras in other subnets broadcast. Thread-bound.
class AdapterSockets {
  public:
    // Sockets that the system refuses are left out.
    explicit AdapterSockets(const NetworkAdapter& adapter);

    const NetworkAdapter& Adapter() const { return adapter_; }
    bool IsEmpty() const { return sockets_.empty(); }

    // To all cameras on the adapter: some hear only broadcasts to everyone, some only those to
    // their subnet. `toAll` goes out from the socket for all addresses, whose answers may be
    // broadcast; without it the first command does.
    void Broadcast(ZelCti::ByteView command, ZelCti::ByteView toAll);

    // From the address whose subnet holds the receiver's, or else from the one that is given; from
    // the first one if there is no such address.
    void Send(uint32_t to, ZelCti::ByteView command, uint32_t from = 0);

    using OnDatagram = std::function<void(const ZelCti::Endpoint& from, ZelCti::ByteView datagram)>;
    void ReceiveAll(const OnDatagram& onDatagram);

    std::vector<int> Descriptors() const;

  private:
    struct Socket {
        Socket(const Subnet& here, const std::string& adapter)
            : subnet(here), socket({here.address, 0}, adapter, false) {}

        const Subnet subnet;  // zeros: for all addresses
        ZelCti::UdpSocket socket;
    };

    void Open(const Subnet& subnet);

    const NetworkAdapter adapter_;
    std::list<Socket> sockets_;
};

}  // namespace ZelGev
