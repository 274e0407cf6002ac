#include "producers/gigevision/discovery/networkadapter.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <ifaddrs.h>
#include <memory>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/ethtool.h>
#include <linux/if_packet.h>
#include <linux/sockios.h>
#include <net/if.h>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"
#include "producers/wire/byteview.h"

namespace ZelGev {

namespace {

// IFF_LOWER_UP, which <net/if.h> lacks. IFF_RUNNING follows up to a second after the carrier.
constexpr unsigned kCarrier = 1U << 16;

struct FreeAdapters {
    void operator()(ifaddrs* list) const { freeifaddrs(list); }
};

// The files below /sys may be those of another network namespace.
bool AskKernel(const std::string& adapter, unsigned long what, ifreq& request) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return false;
    adapter.copy(request.ifr_name, sizeof request.ifr_name - 1);
    const bool isAnswered = ioctl(descriptor, what, &request) == 0;
    close(descriptor);
    return isAnswered;
}

// Of an adapter whose MTU is not told, that of Ethernet.
uint32_t MtuOf(const std::string& adapter) {
    ifreq request{};
    const bool isTold = AskKernel(adapter, SIOCGIFMTU, request) && request.ifr_mtu > 0;
    return isTold ? static_cast<uint32_t>(request.ifr_mtu) : 1500;
}

uint32_t SpeedOf(const std::string& adapter) {
    ethtool_cmd settings{};
    settings.cmd = ETHTOOL_GSET;
    ifreq request{};
    request.ifr_data = reinterpret_cast<char*>(&settings);
    if (!AskKernel(adapter, SIOCETHTOOL, request)) return 0;
    const uint32_t speed = ethtool_cmd_speed(&settings);
    return speed == static_cast<uint32_t>(SPEED_UNKNOWN) ? 0 : speed;
}

uint32_t NumberOf(const sockaddr* address) {
    sockaddr_in native{};
    std::memcpy(&native, address, sizeof native);
    return ntohl(native.sin_addr.s_addr);
}

uint64_t MacOf(const sockaddr* address) {
    sockaddr_ll native{};
    std::memcpy(&native, address, sizeof native);
    if (native.sll_halen != 6) return 0;
    return ZelCti::ByteView{native.sll_addr, sizeof native.sll_addr}.U48(0);
}

NetworkAdapter MakeAdapter(std::string name, unsigned flags) {
    NetworkAdapter adapter;
    adapter.name = std::move(name);
    adapter.index = if_nametoindex(adapter.name.c_str());
    adapter.mtu = MtuOf(adapter.name);
    adapter.speed = SpeedOf(adapter.name);
    adapter.isLoopback = (flags & IFF_LOOPBACK) != 0;
    adapter.isPointToPoint = (flags & IFF_POINTOPOINT) != 0;
    adapter.hasCarrier = (flags & kCarrier) != 0;
    return adapter;
}

void AddAddress(NetworkAdapter& adapter, const ifaddrs& entry) {
    if (entry.ifa_addr == nullptr) return;
    if (entry.ifa_addr->sa_family == AF_PACKET) adapter.mac = MacOf(entry.ifa_addr);
    if (entry.ifa_addr->sa_family != AF_INET || entry.ifa_netmask == nullptr) return;
    adapter.subnets.push_back({NumberOf(entry.ifa_addr), NumberOf(entry.ifa_netmask)});
}

// The gateways of the routes over each adapter. The system writes the bytes of an address as they
// are in memory.
void AddGateways(std::vector<NetworkAdapter>& adapters) {
    std::ifstream routes("/proc/net/route");
    std::string line;
    std::getline(routes, line);  // the titles
    while (std::getline(routes, line)) {
        std::istringstream fields(line);
        std::string name;
        uint32_t destination = 0;
        uint32_t gateway = 0;
        if (!(fields >> name >> std::hex >> destination >> gateway) || gateway == 0) continue;
        gateway = ntohl(gateway);
        for (NetworkAdapter& adapter : adapters) {
            auto& known = adapter.gateways;
            if (adapter.name != name) continue;
            if (std::find(known.begin(), known.end(), gateway) == known.end())
                known.push_back(gateway);
        }
    }
}

int PrefixLength(uint32_t mask) {
    int length = 0;
    for (; mask != 0; mask <<= 1)
        ++length;
    return length;
}

}  // namespace

const Subnet* NetworkAdapter::SubnetOf(uint32_t address) const {
    const Subnet* narrowest = nullptr;
    for (const Subnet& subnet : subnets) {
        if (!subnet.Holds(address)) continue;
        if (narrowest == nullptr || subnet.mask > narrowest->mask) narrowest = &subnet;
    }
    return narrowest;
}

bool NetworkAdapter::operator==(const NetworkAdapter& other) const {
    return name == other.name && index == other.index && mac == other.mac && mtu == other.mtu &&
           speed == other.speed && isLoopback == other.isLoopback &&
           isPointToPoint == other.isPointToPoint && hasCarrier == other.hasCarrier &&
           subnets == other.subnets && gateways == other.gateways;
}

std::string AdapterText(const NetworkAdapter& adapter) {
    std::string subnets;
    for (const Subnet& subnet : adapter.subnets) {
        subnets += (subnets.empty() ? "" : ", ") + ZelCti::IpAddressText(subnet.address) + "/" +
                   std::to_string(PrefixLength(subnet.mask));
    }
    if (subnets.empty()) subnets = "no address";
    return adapter.name + " (" + subnets + (adapter.hasCarrier ? ")" : ", no link)");
}

std::vector<NetworkAdapter> ListNetworkAdapters() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        throw ZelCti::Error(
            GenTL::GC_ERR_IO,
            std::string("the network adapters cannot be listed: ") + std::strerror(errno));
    }
    const std::unique_ptr<ifaddrs, FreeAdapters> list(first);
    std::vector<NetworkAdapter> adapters;
    for (const ifaddrs* i = first; i != nullptr; i = i->ifa_next) {
        if ((i->ifa_flags & IFF_UP) == 0) continue;
        const std::string name = i->ifa_name;
        std::string adapterName =
            name.substr(0, name.find(':'));  // without the label of an address
        auto found = std::find_if(adapters.begin(), adapters.end(),
                                  [&](const auto& known) { return known.name == adapterName; });
        if (found == adapters.end()) {
            adapters.push_back(MakeAdapter(std::move(adapterName), i->ifa_flags));
            found = adapters.end() - 1;
        }
        AddAddress(*found, *i);
    }
    AddGateways(adapters);
    return adapters;
}

}  // namespace ZelGev
