#include "utils/zelgev_utils.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <cstdio>

namespace {

template <typename T>
T ReverseBytes(T value) {
    unsigned char bytes[sizeof value];
    std::copy_n(reinterpret_cast<const unsigned char*>(&value), sizeof value, bytes);
    std::reverse(std::begin(bytes), std::end(bytes));
    std::copy_n(bytes, sizeof value, reinterpret_cast<unsigned char*>(&value));
    return value;
}

}  // namespace

uint32_t IP_Str2N(const char* s) {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    // Fields that are missing stay 0, so the number of conversions does not matter.
    // NOLINTNEXTLINE(cert-err34-c)
    (void)sscanf(s, "%u.%u.%u.%u", &a, &b, &c, &d);
    return a << 24 | b << 16 | c << 8 | d;
}

uint32_t IP_Str2N(const char* s, uint32_t* out) {
    *out = IP_Str2N(s);
    return *out;
}

std::string IP_N2Str(in_addr a) {
    char text[256];
    return inet_ntop(AF_INET, &a, text, sizeof text);
}

std::string IP_N2Str(uint32_t a) {
    in_addr address{};
    address.s_addr = n2h_ul(a);
    return IP_N2Str(address);
}

void MAC_Str2N(const char* s, uint32_t* low, uint16_t* high) {
    std::string text(s);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const bool colons = text.find(':') != std::string::npos;
    unsigned o[6] = {};
    // NOLINTNEXTLINE(cert-err34-c): as above
    (void)sscanf(text.c_str(),
                 colons ? "%02X:%02X:%02X:%02X:%02X:%02X" : "%02X-%02X-%02X-%02X-%02X-%02X", &o[0],
                 &o[1], &o[2], &o[3], &o[4], &o[5]);
    *high = static_cast<uint16_t>(o[0] << 8 | o[1]);
    *low = o[2] << 24 | o[3] << 16 | o[4] << 8 | o[5];
}

std::string MAC_N2Str(std::array<uint8_t, 6> mac, const std::string& separator) {
    std::string text;
    for (const uint8_t octet : mac) {
        char digits[3];
        snprintf(digits, sizeof digits, "%02x", octet);
        if (!text.empty()) text += separator;
        text += digits;
    }
    return text;
}

std::string MAC_N2Str(uint32_t low, uint16_t high, const std::string& separator) {
    const auto octet = [](uint32_t value, unsigned shift) {
        return static_cast<uint8_t>(value >> shift & 0xFF);
    };
    return MAC_N2Str(std::array<uint8_t, 6>{octet(high, 8), octet(high, 0), octet(low, 24),
                                            octet(low, 16), octet(low, 8), octet(low, 0)},
                     separator);
}

uint32_t n2h_ul(uint32_t value) {
    return ReverseBytes(value);
}
long n2h_l(long value) {
    return ReverseBytes(value);
}
uint16_t n2h_us(uint16_t value) {
    return ReverseBytes(value);
}
short n2h_s(short value) {
    return ReverseBytes(value);
}
