// Preloaded into a program, this is a driver of the adapter eth1 that drops packets, as its receive
// ring of at most 4096 packets is full: no adapter of a namespace has a ring. FULLRING_SIZE is the
// size of the ring.

#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <ifaddrs.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <linux/ethtool.h>
#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/sockios.h>

namespace {

constexpr const char* kAdapter = "eth1";
constexpr uint32_t kLargest = 4096;

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsRingQuestion(const ifreq& request) {
    uint32_t command = 0;
    std::memcpy(&command, request.ifr_data, sizeof command);
    return command == ETHTOOL_GRINGPARAM && std::strcmp(request.ifr_name, kAdapter) == 0;
}

}  // namespace

#define EXPORT extern "C" __attribute__((visibility("default")))

// One packet more each time.
EXPORT int getifaddrs(ifaddrs** first) {
    static uint32_t missed = 0;
    const int result = Next<int(ifaddrs**)>("getifaddrs")(first);
    if (result != 0) return result;
    ++missed;
    for (const ifaddrs* entry = *first; entry != nullptr; entry = entry->ifa_next) {
        const bool isLink = entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_PACKET;
        if (isLink && std::strcmp(entry->ifa_name, kAdapter) == 0)
            static_cast<rtnl_link_stats*>(entry->ifa_data)->rx_missed_errors = missed;
    }
    return result;
}

EXPORT int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (request == SIOCETHTOOL && IsRingQuestion(*static_cast<const ifreq*>(argument))) {
        ethtool_ringparam ring{};
        ring.rx_max_pending = kLargest;
        ring.rx_pending = static_cast<uint32_t>(std::atoi(std::getenv("FULLRING_SIZE")));
        std::memcpy(static_cast<const ifreq*>(argument)->ifr_data, &ring, sizeof ring);
        return 0;
    }
    return Next<int(int, unsigned long, ...)>("ioctl")(descriptor, request, argument);
}
