// The network adapters of this machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZelGev {

// An address of an adapter, with the subnet that is reached there.
struct Subnet {
    uint32_t address = 0;
    uint32_t mask = 0;

    bool Holds(uint32_t other) const { return ((address ^ other) & mask) == 0; }
    uint32_t Broadcast() const { return address | ~mask; }
    // Subnets of one or two addresses have no address for broadcasts.
    bool HasBroadcast() const { return ~mask > 1; }
    bool operator==(const Subnet& other) const {
        return address == other.address && mask == other.mask;
    }
};

// An adapter that is up.
struct NetworkAdapter {
    std::string name;
    unsigned index = 0;
    uint64_t mac = 0;     // 48 bits; 0: it has none
    uint32_t mtu = 1500;  // bytes of an IP datagram
    uint32_t speed = 0;   // Mbit/s; 0: unknown
    bool isLoopback = false;
    bool isPointToPoint = false;
    bool hasCarrier = true;       // somebody may be at the other end
    std::vector<Subnet> subnets;  // none without an IPv4 address
    std::vector<uint32_t> gateways;

    // The narrowest subnet that holds the address; null when none does.
    const Subnet* SubnetOf(uint32_t address) const;

    bool operator==(const NetworkAdapter& other) const;
};

// "eth0 (10.77.0.1/24, 192.168.1.1/16)", or "eth0 (no address, no link)".
std::string AdapterText(const NetworkAdapter& adapter);

// Throws GC_ERR_IO.
std::vector<NetworkAdapter> ListNetworkAdapters();

}  // namespace ZelGev
