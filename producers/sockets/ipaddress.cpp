#include "producers/sockets/ipaddress.h"

#include <charconv>

namespace ZelCti {

namespace {

// So many bytes in digits of the base, with the separator between them.
std::optional<uint64_t> ParseBytes(std::string_view text, int count, char separator, int base) {
    uint64_t address = 0;
    const char* next = text.data();
    const char* const end = text.data() + text.size();
    for (int part = 0; part < count; ++part) {
        if (part != 0 && (next == end || *next++ != separator)) return std::nullopt;
        uint8_t number = 0;
        const auto [stop, error] = std::from_chars(next, end, number, base);
        if (error != std::errc{}) return std::nullopt;
        address = address << 8 | number;
        next = stop;
    }
    if (next != end) return std::nullopt;
    return address;
}

}  // namespace

std::optional<uint32_t> ParseIpAddress(std::string_view text) {
    const std::optional<uint64_t> address = ParseBytes(text, 4, '.', 10);
    if (!address) return std::nullopt;
    return static_cast<uint32_t>(*address);
}

std::string IpAddressText(uint32_t address) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += std::to_string(address >> shift & 0xFF) + (shift == 0 ? "" : ".");
    return text;
}

std::optional<uint64_t> ParseMacAddress(std::string_view text) {
    return ParseBytes(text, 6, ':', 16);
}

std::string MacAddressText(uint64_t address) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (int shift = 44; shift >= 0; shift -= 4) {
        text += kDigits[address >> shift & 0xF];
        if (shift % 8 == 0 && shift != 0) text += ':';
    }
    return text;
}

}  // namespace ZelCti
