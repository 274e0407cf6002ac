// IPv4 and MAC addresses as texts and numbers.
#include "utils/zelgev_utils.h"

#include <arpa/inet.h>

#include <gtest/gtest.h>

TEST(ZelGevUtils, AddressesFromText) {
    const std::pair<const char*, uint32_t> addresses[] = {
        {"192.168.1.10", 0xC0A8010A},
        {"255.255.255.255", 0xFFFFFFFF},
        {"10.0", 0x0A000000},
        {"", 0},
        {"1.2.3.4.5", 0x01020304},
        {"1.2.3.4 trailing", 0x01020304},
        {"1.300.0.0", 0x012C0000 | 0x01000000},  // 300 spills into the octet before it
        {"1,2,3,4", 0x01000000}};
    for (const auto& [text, number] : addresses) {
        EXPECT_EQ(IP_Str2N(text), number) << text;
        uint32_t out = 0xDEADBEEF;
        EXPECT_EQ(IP_Str2N(text, &out), number) << text;
        EXPECT_EQ(out, number) << text;
    }
}

TEST(ZelGevUtils, AddressesToText) {
    EXPECT_EQ(IP_N2Str(uint32_t{0xC0A8010A}), "192.168.1.10");
    in_addr address{};
    address.s_addr = htonl(0x0A000102);
    EXPECT_EQ(IP_N2Str(address), "10.0.1.2");
}

TEST(ZelGevUtils, MacAddressesFromText) {
    const struct {
        const char* text;
        uint16_t high;
        uint32_t low;
    } addresses[] = {{"00-1a-2B-3c-4D-5e", 0x001A, 0x2B3C4D5E},
                     {"00:1a:2B:3c:4D:5e", 0x001A, 0x2B3C4D5E},
                     {"AB-CD", 0xABCD, 0},
                     {"AB-CD:EF", 0xAB00, 0},  // a ':' anywhere makes it the separator
                     {"", 0, 0}};
    for (const auto& address : addresses) {
        uint32_t low = 1;
        uint16_t high = 1;
        MAC_Str2N(address.text, &low, &high);
        EXPECT_EQ(high, address.high) << address.text;
        EXPECT_EQ(low, address.low) << address.text;
    }
}

TEST(ZelGevUtils, MacAddressesToText) {
    EXPECT_EQ(MAC_N2Str(0x2B3C4D5E, 0x001A, ":"), "00:1a:2b:3c:4d:5e");
    EXPECT_EQ(MAC_N2Str({0xFF, 0x0A, 0, 1, 2, 3}, "--"), "ff--0a--00--01--02--03");
    EXPECT_EQ(MAC_N2Str({0xFF, 0x0A, 0, 1, 2, 3}, ""), "ff0a00010203");
}

TEST(ZelGevUtils, BytesAreReversed) {
    EXPECT_EQ(n2h_ul(0x01020304U), 0x04030201U);
    EXPECT_EQ(n2h_us(0x0102U), 0x0201U);
    EXPECT_EQ(n2h_s(-2), static_cast<short>(0xFEFF));
    EXPECT_EQ(n2h_l(0x0102030405060708L), 0x0807060504030201L);
}
