#include "producers/simulator/config/network.h"

#include <charconv>

namespace ZelSim {

std::optional<uint32_t> ParseIpAddress(std::string_view text) {
    uint32_t address = 0;
    const char* next = text.data();
    const char* const end = text.data() + text.size();
    for (int part = 0; part < 4; ++part) {
        if (part != 0 && (next == end || *next++ != '.')) return std::nullopt;
        uint8_t number = 0;
        const auto [stop, error] = std::from_chars(next, end, number);
        if (error != std::errc{}) return std::nullopt;
        address = address << 8 | number;
        next = stop;
    }
    if (next != end) return std::nullopt;
    return address;
}

uint64_t MacAddressOf(const std::string& id) {
    constexpr uint64_t kLocallyAdministered = uint64_t{0x02} << 40;
    uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char c : id)
        hash = (hash ^ static_cast<uint8_t>(c)) * 0x100000001B3;
    return kLocallyAdministered | (hash & 0xFFFFFFFFFF);
}

}  // namespace ZelSim
