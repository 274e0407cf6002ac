// What a camera tells of itself when it is discovered.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "producers/sockets/ipaddress.h"
#include "producers/wire/byteview.h"

namespace ZelGev {

// Texts are clean: valid UTF-8 without control characters and without blanks at their ends.
struct FoundCamera {
    std::string id;  // the same at each discovery, and no other camera has it
    uint64_t mac = 0;
    ZelCti::IpSettings ip;
    uint16_t versionMajor = 0;  // of GigE Vision
    uint16_t versionMinor = 0;
    bool bigEndian = false;  // registers outside the bootstrap area
    std::string manufacturer;
    std::string model;
    std::string version;
    std::string serialNumber;  // the MAC address without one
    std::string userName;
};

struct DiscoveryAnswer {
    uint16_t ackId;  // of the question
    FoundCamera camera;
};

// None for a datagram that is no answer to a question for cameras.
std::optional<DiscoveryAnswer> ReadDiscoveryAnswer(ZelCti::ByteView datagram);

// Control characters become blanks, bytes that are no UTF-8 are taken as Latin-1.
std::string CleanText(std::string_view text);

}  // namespace ZelGev
