#include "tools/zelcam/camera/hostaddress.h"

#include <arpa/inet.h>
#include <cstdint>

#include "tools/zelcam/camera/words.h"

namespace ZelTool {

namespace {

[[noreturn]] void RefuseNetwork(const std::string& why) {
    throw Failure(ExitCode::Usage, why + "; --force sets it anyway");
}

// The first octet in the most significant byte.
uint32_t ParseAddress(const std::string& text) {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1) {
        throw Failure(ExitCode::Usage,
                      "\"" + text + "\" is not an address of the form 192.168.0.1");
    }
    return ntohl(address.s_addr);
}

// Ones, then zeros; at least one of each.
bool IsMask(uint32_t mask) {
    const uint32_t host = ~mask;
    return mask != 0 && host != 0 && (host & (host + 1)) == 0;
}

// Excludes 0.x, loopback, multicast and reserved addresses, among them 255.255.255.255.
bool IsUnicast(uint32_t address) {
    const uint32_t first = address >> 24;
    return first > 0 && first < 224 && first != 127;
}

void CheckHost(const std::string& name, uint32_t address, uint32_t mask) {
    if (!IsUnicast(address)) RefuseNetwork(name + " is not a host address");
    if ((address & ~mask) == 0) RefuseNetwork(name + " is the address of the network itself");
    if ((address | mask) == UINT32_MAX) {
        RefuseNetwork(name + " is the broadcast address of the network");
    }
}

}  // namespace

Network NetworkOf(ZelCam::DeviceInfo& info) {
    ZelCamErr code = ZelCamErr_Success;
    Network network;
    network.address = TextOrEmpty(info.GetIPAddress(&code));
    if (code == ZelCamErr_Success) network.mask = TextOrEmpty(info.GetIPMask(&code));
    if (code == ZelCamErr_Success) network.gateway = TextOrEmpty(info.GetIPGateway(&code));
    RequireSuccess(code, "the interface does not report the camera's address");
    return network;
}

std::string DottedAddress(uint32_t address) {
    const in_addr inNetworkOrder{htonl(address)};
    char text[INET_ADDRSTRLEN];
    inet_ntop(AF_INET, &inNetworkOrder, text, sizeof(text));
    return text;
}

void CheckNetwork(const Network& network, bool anyAddress) {
    const uint32_t address = ParseAddress(network.address);
    const uint32_t mask = ParseAddress(network.mask);
    const uint32_t gateway = ParseAddress(network.gateway);
    if (anyAddress) return;
    if (!IsMask(mask)) RefuseNetwork(network.mask + " is not a network mask");
    CheckHost(network.address, address, mask);
    if (gateway == 0) return;
    CheckHost("the gateway " + network.gateway, gateway, mask);
    if (((gateway ^ address) & mask) != 0) {
        RefuseNetwork("the gateway " + network.gateway + " is outside the network");
    }
}

}  // namespace ZelTool
