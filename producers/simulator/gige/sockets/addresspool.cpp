#include "producers/simulator/gige/sockets/addresspool.h"

#include <utility>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"

namespace ZelSim {

using ZelCti::Error;
using ZelCti::HostAddress;
using ZelCti::ParseIpAddress;

namespace {

constexpr uint32_t kLoopbackNetwork = 0x7F000000;
constexpr uint32_t kLoopbackMask = 0xFF000000;
constexpr uint32_t kFirstLoopback = 0x7F000002;
constexpr uint32_t kLastLoopback = 0x7FFFFFFE;

bool IsLoopback(uint32_t address) {
    return (address & kLoopbackMask) == kLoopbackNetwork;
}

// Whether every address of the loopback network is there, whichever of them is listed.
bool IsWholeNetwork(const HostAddress& address) {
    return address.isLoopback && IsLoopback(address.address);
}

const std::string& LoopbackOf(const std::vector<HostAddress>& host) {
    for (const HostAddress& address : host)
        if (address.isLoopback) return address.interface;
    throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "no loopback interface of this machine is up");
}

}  // namespace

AddressPool::AddressPool(const std::vector<std::string>& on, std::vector<HostAddress> host)
    : host_(std::move(host)) {
    for (const std::string& place : on)
        Allow(place);
    if (on.empty()) Allow(LoopbackOf(host_));
}

void AddressPool::Allow(const std::string& place) {
    const std::optional<uint32_t> address = ParseIpAddress(place);
    bool found = false;
    for (HostAddress known : host_) {
        const bool isWhole = IsWholeNetwork(known);
        if (address ? known.address != *address && !(isWhole && IsLoopback(*address))
                    : known.interface != place)
            continue;
        found = true;
        if (isWhole) known.address = address ? *address : kFirstLoopback;
        allowed_.push_back(known);
    }
    if (found) return;
    throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                place + " is neither an address nor an interface of this machine that is up");
}

std::optional<HostAddress> AddressPool::Take() {
    while (next_ < allowed_.size()) {
        HostAddress address = allowed_[next_];
        if (!IsWholeNetwork(address)) {
            ++next_;
            return address;
        }
        address.address += numTaken_++;
        if (address.address <= kLastLoopback) return address;
        ++next_;
        numTaken_ = 0;
    }
    return std::nullopt;
}

std::optional<HostAddress> AddressPool::Find(uint32_t address) const {
    for (HostAddress known : allowed_) {
        if (known.address == address) return known;
        if (!IsWholeNetwork(known) || !IsLoopback(address)) continue;
        known.address = address;
        return known;
    }
    return std::nullopt;
}

}  // namespace ZelSim
