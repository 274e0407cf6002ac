#include "producers/gigevision/discovery/adapterwatch.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>

namespace ZelGev {

namespace {

int OpenWatch() {
    const int descriptor =
        socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (descriptor < 0) return -1;
    sockaddr_nl local{};
    local.nl_family = AF_NETLINK;
    local.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE;
    if (bind(descriptor, reinterpret_cast<const sockaddr*>(&local), sizeof local) == 0) {
        return descriptor;
    }
    close(descriptor);
    return -1;
}

}  // namespace

AdapterWatch::AdapterWatch() : descriptor_(OpenWatch()) {}

AdapterWatch::~AdapterWatch() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool AdapterWatch::HasChanged() {
    if (descriptor_ < 0) return true;
    bool changed = std::exchange(isFirst_, false);
    // What the messages say does not matter: the adapters are listed anew.
    std::array<char, 4096> message{};
    for (;;) {
        const ssize_t size = recv(descriptor_, message.data(), message.size(), MSG_DONTWAIT);
        if (size >= 0 || errno == ENOBUFS) {  // the latter: notices got lost
            changed = true;
        } else if (errno != EINTR) {
            return changed;
        }
    }
}

}  // namespace ZelGev
