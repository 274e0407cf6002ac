// The addresses of this machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZelCti {

// An address of a network interface of this machine.
struct HostAddress {
    std::string interface;
    unsigned index = 0;  // of the interface
    uint32_t address = 0;
    uint32_t mask = 0;
    bool isLoopback = false;

    uint32_t Broadcast() const { return address | ~mask; }
};

// Those of IPv4, of interfaces that are up. Throws GC_ERR_IO.
std::vector<HostAddress> ListHostAddresses();

}  // namespace ZelCti
