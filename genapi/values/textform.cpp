#include "genapi/values/textform.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr char kDigits[] = "0123456789abcdef";

std::string_view WithoutLeadingBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

// The form of addresses: groups of digits with a separator between them.
struct AddressForm {
    unsigned groups;
    char separator;
    int base;
};
constexpr AddressForm kIpv4{4, '.', 10};
constexpr AddressForm kMac{6, ':', 16};

std::string FormatAddress(int64_t value, const AddressForm& form) {
    std::string text;
    for (unsigned group = form.groups; group-- > 0;) {
        const unsigned byte = static_cast<unsigned>(value >> (8 * group)) & 0xFFu;
        char digits[8];
        std::snprintf(digits, sizeof digits, form.base == 16 ? "%02x" : "%u", byte);
        text += digits;
        if (group > 0) text += form.separator;
    }
    return text;
}

bool ParseAddress(std::string_view text, const AddressForm& form, int64_t& value) {
    uint64_t result = 0;
    for (unsigned group = 0; group < form.groups; ++group) {
        if (group > 0) {
            if (text.empty() || text[0] != form.separator) return false;
            text.remove_prefix(1);
        }
        unsigned byte = 0;
        const auto [stop, error] =
            std::from_chars(text.data(), text.data() + text.size(), byte, form.base);
        if (error != std::errc() || byte > 0xFF) return false;
        text.remove_prefix(static_cast<size_t>(stop - text.data()));
        result = result << 8 | byte;
    }
    value = static_cast<int64_t>(result);
    return text.empty();
}

bool ParseNumber(std::string_view text, int64_t& value) {
    text = WithoutLeadingBlanks(text);
    bool negative = false;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    uint64_t magnitude = 0;
    const auto [stop, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
    if (error == std::errc::invalid_argument) return false;
    constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
    constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
    if (error == std::errc::result_out_of_range) magnitude = std::numeric_limits<uint64_t>::max();
    if (negative)
        value = magnitude > static_cast<uint64_t>(kMax) ? kMin : -static_cast<int64_t>(magnitude);
    else
        value = magnitude > static_cast<uint64_t>(kMax) ? kMax : static_cast<int64_t>(magnitude);
    return true;
}

int DigitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

}  // namespace

std::string FormatInteger(int64_t value, ERepresentation representation) {
    char text[24];
    switch (representation) {
        case HexNumber: {
            if (value == 0) return "0";
            const auto end =
                std::to_chars(text, text + sizeof text, static_cast<uint64_t>(value), 16);
            return "0x" + std::string(text, end.ptr);
        }
        case IPV4Address:
            return FormatAddress(value, kIpv4);
        case MACAddress:
            return FormatAddress(value, kMac);
        case Boolean:
            return value ? "true" : "false";
        default:
            return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
    }
}

bool ParseInteger(std::string_view text, ERepresentation representation, int64_t& value) {
    switch (representation) {
        case IPV4Address:
            return ParseAddress(text, kIpv4, value);
        case MACAddress:
            return ParseAddress(text, kMac, value);
        case Boolean:
            value = text == "true" ? 1 : 0;
            return value == 1 || text == "false";
        default:
            return ParseNumber(text, value);
    }
}

std::string FormatFloat(double value, EDisplayNotation notation, int precision) {
    // printf would take the decimal point from the locale; to_chars always writes '.'.
    const std::chars_format format = notation == fnFixed        ? std::chars_format::fixed
                                     : notation == fnScientific ? std::chars_format::scientific
                                                                : std::chars_format::general;
    char text[1100];  // a double has up to 309 digits before the point, precision at most 400
    const auto end = std::to_chars(text, text + sizeof text, value, format, precision);
    return std::string(text, end.ptr);
}

bool ParseFloat(std::string_view text, double& value) {
    text = WithoutLeadingBlanks(text);
    if (!text.empty() && text[0] == '+') text.remove_prefix(1);
    const size_t first = !text.empty() && text[0] == '-' ? 1 : 0;
    // from_chars would accept "inf" and "nan", which are not numbers here.
    if (first >= text.size() ||
        ((DigitOf(text[first]) > 9 || DigitOf(text[first]) < 0) && text[first] != '.'))
        return false;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc();
}

std::string FormatBytes(const uint8_t* bytes, size_t count) {
    std::string text;
    text.reserve(2 + 2 * count);
    text = "0x";
    for (size_t i = 0; i < count; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
    }
    return text;
}

bool ParseBytes(std::string_view text, std::vector<uint8_t>& bytes) {
    if (text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X") text.remove_prefix(2);
    if (text.empty() || text.size() % 2 != 0) return false;
    bytes.clear();
    bytes.reserve(text.size() / 2);
    for (size_t i = 0; i < text.size(); i += 2) {
        const int high = DigitOf(text[i]), low = DigitOf(text[i + 1]);
        if (high < 0 || low < 0) return false;
        bytes.push_back(static_cast<uint8_t>(high << 4 | low));
    }
    return true;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
