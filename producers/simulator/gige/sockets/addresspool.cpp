#include "producers/simulator/gige/sockets/addresspool.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <ifaddrs.h>
#include <memory>

#include <net/if.h>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelSim {

using ZelCti::Error;

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

uint32_t AddressOf(const sockaddr* address) {
    sockaddr_in native{};
    std::memcpy(&native, address, sizeof native);
    return ntohl(native.sin_addr.s_addr);
}

const std::string& LoopbackOf(const std::vector<HostAddress>& host) {
    for (const HostAddress& address : host)
        if (address.isLoopback) return address.interface;
    throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "no loopback interface of this machine is up");
}

struct FreeAddresses {
    void operator()(ifaddrs* list) const { freeifaddrs(list); }
};

}  // namespace

std::vector<HostAddress> ListHostAddresses() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        throw Error(GenTL::GC_ERR_IO, std::string("the network interfaces cannot be listed: ") +
                                          std::strerror(errno));
    }
    const std::unique_ptr<ifaddrs, FreeAddresses> list(first);
    std::vector<HostAddress> host;
    for (const ifaddrs* i = first; i != nullptr; i = i->ifa_next) {
        if (i->ifa_addr == nullptr || i->ifa_addr->sa_family != AF_INET) continue;
        if ((i->ifa_flags & IFF_UP) == 0 || i->ifa_netmask == nullptr) continue;
        HostAddress& address = host.emplace_back();
        address.interface = i->ifa_name;
        address.interface.resize(std::min(address.interface.size(), address.interface.find(':')));
        address.index = if_nametoindex(address.interface.c_str());
        address.address = AddressOf(i->ifa_addr);
        address.mask = AddressOf(i->ifa_netmask);
        address.isLoopback = (i->ifa_flags & IFF_LOOPBACK) != 0;
    }
    return host;
}

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
