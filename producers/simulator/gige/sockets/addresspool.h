// The addresses at which cameras may be served.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "producers/sockets/hostaddresses.h"

namespace ZelSim {

// The addresses that the user allowed, and no others: a camera that is served beyond loopback by
// accident would disturb a network. Thread-bound, but for Find, which may run at any time.
class AddressPool {
  public:
    // `on` are addresses and names of interfaces; none means loopback. Every address of the
    // loopback network from 127.0.0.2 on, or from the one that is named on, is one for a camera; of
    // other interfaces those that this machine has. Throws GC_ERR_INVALID_PARAMETER for what this
    // machine has not.
    AddressPool(const std::vector<std::string>& on, std::vector<ZelCti::HostAddress> host);

    // The next address that was not given out.
    std::optional<ZelCti::HostAddress> Take();

    // The place of an address; none if it is not allowed.
    std::optional<ZelCti::HostAddress> Find(uint32_t address) const;

  private:
    void Allow(const std::string& place);

    const std::vector<ZelCti::HostAddress> host_;
    std::vector<ZelCti::HostAddress> allowed_;  // for loopback the first of its addresses
    size_t next_ = 0;                           // of `allowed_`
    uint32_t numTaken_ = 0;                     // of the loopback addresses of that
};

}  // namespace ZelSim
