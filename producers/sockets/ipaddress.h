// Addresses on a network, and their texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZelCti {

// Addresses of version 4 as numbers: 192.168.0.1 is 0xC0A80001.
struct IpSettings {
    uint32_t address = 0;
    uint32_t mask = 0;
    uint32_t gateway = 0;
};

// Four numbers from 0 to 255 with points between them.
std::optional<uint32_t> ParseIpAddress(std::string_view text);
std::string IpAddressText(uint32_t address);

// Six bytes in hexadecimal digits with colons between them.
std::optional<uint64_t> ParseMacAddress(std::string_view text);
std::string MacAddressText(uint64_t address);

}  // namespace ZelCti
