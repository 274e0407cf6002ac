#include "producers/gigevision/discovery/route.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ZelGev {

namespace {

constexpr uint16_t kAnyPort = 9;  // of discard; nothing is sent there

uint32_t AskSystem(int descriptor, uint32_t address) {
    sockaddr_in native{};
    native.sin_family = AF_INET;
    native.sin_port = htons(kAnyPort);
    native.sin_addr.s_addr = htonl(address);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&native), sizeof native) != 0) {
        return 0;
    }
    socklen_t size = sizeof native;
    if (getsockname(descriptor, reinterpret_cast<sockaddr*>(&native), &size) != 0) return 0;
    return ntohl(native.sin_addr.s_addr);
}

}  // namespace

uint32_t HostAddressTo(uint32_t address) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return 0;
    const uint32_t host = AskSystem(descriptor, address);
    close(descriptor);
    return host;
}

}  // namespace ZelGev
