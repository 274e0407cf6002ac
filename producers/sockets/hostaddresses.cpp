#include "producers/sockets/hostaddresses.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <ifaddrs.h>
#include <memory>

#include <net/if.h>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

uint32_t AddressOf(const sockaddr* address) {
    sockaddr_in native{};
    std::memcpy(&native, address, sizeof native);
    return ntohl(native.sin_addr.s_addr);
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

}  // namespace ZelCti
