// The end of a connection.
#pragma once

#include <cstdint>

namespace ZelCti {

// Where a datagram comes from or goes to; the address is a number as in IpSettings.
struct Endpoint {
    uint32_t address = 0;
    uint16_t port = 0;

    bool operator==(const Endpoint& other) const {
        return address == other.address && port == other.port;
    }
    bool operator!=(const Endpoint& other) const { return !(*this == other); }
};

}  // namespace ZelCti
