#include "tools/zelcam/doctor/adapterreader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ifaddrs.h>
#include <memory>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/ethtool.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/if_link.h>
#include <linux/if_packet.h>
#include <linux/sockios.h>
#include <linux/wireless.h>

#include "tools/zelcam/doctor/systemfiles.h"

namespace ZelTool {

namespace {

using Addresses = std::unique_ptr<ifaddrs, decltype(&freeifaddrs)>;

Addresses ListAddresses() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) first = nullptr;
    return {first, freeifaddrs};
}

// A socket that is not bound: for questions to the kernel.
class Question {
  public:
    Question() : descriptor_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~Question() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    int Descriptor() const { return descriptor_; }

    // `request` is an ifreq or an iwreq, whose name is set.
    template <typename Request>
    bool Ask(unsigned long what, Request& request) const {
        return ioctl(descriptor_, what, &request) == 0;
    }

    // `data` begins with the number of an ethtool command.
    template <typename Data>
    bool AskDriver(const std::string& adapter, Data& data) const {
        ifreq request = Named(adapter);
        request.ifr_data = reinterpret_cast<char*>(&data);
        return Ask(SIOCETHTOOL, request);
    }

    static ifreq Named(const std::string& adapter) {
        ifreq request{};
        adapter.copy(request.ifr_name, IFNAMSIZ - 1);
        return request;
    }

  private:
    const int descriptor_;
};

uint32_t AddressIn(const sockaddr* address) {
    if (address == nullptr) return 0;
    sockaddr_in internet{};
    std::memcpy(&internet, address, sizeof internet);
    return ntohl(internet.sin_addr.s_addr);
}

AdapterFacts& Entry(std::vector<AdapterFacts>& adapters, const char* name) {
    const auto found = std::find_if(adapters.begin(), adapters.end(),
                                    [&](const AdapterFacts& each) { return each.name == name; });
    if (found != adapters.end()) return *found;
    adapters.emplace_back();
    adapters.back().name = name;
    return adapters.back();
}

AdapterDrops DropsIn(const ifaddrs& entry) {
    rtnl_link_stats counts{};
    if (entry.ifa_data == nullptr) return {};
    std::memcpy(&counts, entry.ifa_data, sizeof counts);
    return {counts.rx_dropped, counts.rx_missed_errors, counts.rx_fifo_errors};
}

// Whether the adapter is software that joins others, or goes somewhere else than to a cable.
bool IsVirtual(const Question& question, const std::string& adapter) {
    constexpr std::array<const char*, 6> kDrivers = {"ifb",         "bridge", "tun",
                                                     "openvswitch", "dummy",  "wireguard"};
    ethtool_drvinfo info{};
    info.cmd = ETHTOOL_GDRVINFO;
    if (!question.AskDriver(adapter, info)) return false;
    return std::any_of(kDrivers.begin(), kDrivers.end(), [&](const char* driver) {
        return std::strncmp(info.driver, driver, sizeof info.driver) == 0;
    });
}

bool IsWireless(const Question& question, const std::string& adapter) {
    iwreq request{};
    adapter.copy(request.ifr_name, IFNAMSIZ - 1);
    return question.Ask(SIOCGIWNAME, request);
}

std::optional<Ring> ReadRing(const Question& question, const std::string& adapter) {
    ethtool_ringparam ring{};
    ring.cmd = ETHTOOL_GRINGPARAM;
    if (!question.AskDriver(adapter, ring)) return std::nullopt;
    return Ring{ring.rx_pending, ring.rx_max_pending};
}

uint32_t ReadMtu(const Question& question, const std::string& adapter) {
    ifreq request = Question::Named(adapter);
    return question.Ask(SIOCGIFMTU, request) ? static_cast<uint32_t>(request.ifr_mtu) : 0;
}

// The larger one of the values for all adapters and for this one counts.
uint32_t ReadReversePathFilter(const std::string& adapter) {
    uint64_t largest = 0;
    for (const std::string& name : {std::string("all"), adapter}) {
        const auto value = ReadCount("/proc/sys/net/ipv4/conf/" + name + "/rp_filter");
        largest = std::max(largest, value.value_or(0));
    }
    return static_cast<uint32_t>(largest);
}

void Note(const ifaddrs& entry, AdapterFacts& adapter, bool& isEthernet) {
    adapter.isUp = (entry.ifa_flags & IFF_UP) != 0;
    adapter.hasLink = (entry.ifa_flags & IFF_LOWER_UP) != 0;  // IFF_RUNNING comes late
    adapter.isLoopback = (entry.ifa_flags & IFF_LOOPBACK) != 0;
    if (entry.ifa_addr == nullptr) return;
    if (entry.ifa_addr->sa_family == AF_PACKET) {
        sockaddr_ll link{};
        std::memcpy(&link, entry.ifa_addr, sizeof link);
        isEthernet = link.sll_hatype == ARPHRD_ETHER;
        adapter.drops = DropsIn(entry);
    } else if (entry.ifa_addr->sa_family == AF_INET) {
        adapter.subnets.push_back({AddressIn(entry.ifa_addr), AddressIn(entry.ifa_netmask)});
    }
}

}  // namespace

std::vector<AdapterFacts> ReadAdapters() {
    const Question question;
    const Addresses addresses = ListAddresses();
    std::vector<AdapterFacts> adapters;
    for (const ifaddrs* entry = addresses.get(); entry != nullptr; entry = entry->ifa_next) {
        AdapterFacts& adapter = Entry(adapters, entry->ifa_name);
        bool isEthernet = adapter.isWired;
        Note(*entry, adapter, isEthernet);
        adapter.isWired = isEthernet;
    }
    for (AdapterFacts& adapter : adapters) {
        adapter.isWired = adapter.isWired && !IsVirtual(question, adapter.name) &&
                          !IsWireless(question, adapter.name);
        adapter.mtu = ReadMtu(question, adapter.name);
        adapter.ring = ReadRing(question, adapter.name);
        adapter.reversePathFilter = ReadReversePathFilter(adapter.name);
    }
    return adapters;
}

AdapterDrops ReadDrops(const std::string& adapter) {
    const Addresses addresses = ListAddresses();
    for (const ifaddrs* entry = addresses.get(); entry != nullptr; entry = entry->ifa_next) {
        const bool isLink = entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_PACKET;
        if (isLink && adapter == entry->ifa_name) return DropsIn(*entry);
    }
    return {};
}

// The kernel chooses the address of the adapter through which it would send.
std::string AdapterTowards(uint32_t address, const std::vector<AdapterFacts>& adapters) {
    const Question question;
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(1);
    place.sin_addr.s_addr = htonl(address);
    if (connect(question.Descriptor(), reinterpret_cast<const sockaddr*>(&place), sizeof place) !=
        0) {
        return "";
    }
    socklen_t size = sizeof place;
    getsockname(question.Descriptor(), reinterpret_cast<sockaddr*>(&place), &size);
    const uint32_t own = ntohl(place.sin_addr.s_addr);
    for (const AdapterFacts& adapter : adapters) {
        for (const Subnet& subnet : adapter.subnets) {
            const bool isWithin = adapter.isLoopback && ((subnet.address ^ own) & subnet.mask) == 0;
            if (subnet.address == own || isWithin) return adapter.name;
        }
    }
    return "";
}

}  // namespace ZelTool
