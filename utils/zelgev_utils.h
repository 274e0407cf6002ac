// Conversions of IPv4 and MAC addresses between text and numbers, and byte swaps.
//
// IPv4 addresses are 32-bit numbers with the first octet in the most significant byte. A MAC
// address is a 16-bit high part (first two octets) and a 32-bit low part (last four), first octet
// first.
#pragma once

#include <array>
#include <cstdint>
#include <netinet/in.h>
#include <string>

// Dotted text to number. Missing fields count as 0; a field above 255 spills into its neighbours.
uint32_t IP_Str2N(const char* s);
uint32_t IP_Str2N(const char* s, uint32_t* out);

// Number to dotted text; the first form takes network byte order, like in_addr.
std::string IP_N2Str(in_addr a);
std::string IP_N2Str(uint32_t a);

// Six hexadecimal fields in upper or lower case, separated by ':' if the text has one, else by '-'.
// Missing fields count as 0.
void MAC_Str2N(const char* s, uint32_t* low, uint16_t* high);

// Lower-case hexadecimal, two digits an octet, with `separator` between them.
std::string MAC_N2Str(std::array<uint8_t, 6> mac, const std::string& separator);
std::string MAC_N2Str(uint32_t low, uint16_t high, const std::string& separator);

// Reverse the bytes, whatever the byte order of the machine.
uint32_t n2h_ul(uint32_t value);
long n2h_l(long value);
uint16_t n2h_us(uint16_t value);
short n2h_s(short value);
