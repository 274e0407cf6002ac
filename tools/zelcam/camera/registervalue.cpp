#include "tools/zelcam/camera/registervalue.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/numbertext.h"

namespace ZelTool {

namespace {

// The least significant byte first.
std::string LittleEndian(uint64_t bits, size_t size) {
    std::string bytes;
    for (size_t i = 0; i < size; ++i)
        bytes += static_cast<char>(bits >> (8 * i));
    return bytes;
}

uint64_t BitsOf(const std::string& littleEndian) {
    uint64_t bits = 0;
    for (size_t i = 0; i < littleEndian.size(); ++i)
        bits |= uint64_t{static_cast<uint8_t>(littleEndian[i])} << (8 * i);
    return bits;
}

std::string InOrder(std::string littleEndian, ByteOrder order) {
    if (order == ByteOrder::Big) std::reverse(littleEndian.begin(), littleEndian.end());
    return littleEndian;
}

template <typename To, typename From>
To BitCast(From from) {
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

// Converts by the shortest decimal text, so that 0.1 stays 0.1.
double Widened(float number) {
    char text[32];
    const auto* const end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    return ParseWhole<double>({text, static_cast<size_t>(end - text)}).value_or(number);
}

// Negative numbers become two's complement.
std::optional<uint64_t> BitsOfInteger(const std::string& value, size_t size, bool isSigned) {
    const uint64_t most = UINT64_MAX >> (8 * (8 - size));
    if (!isSigned || value.compare(0, 2, "0x") == 0) {
        const auto number = ParseUnsigned(value);
        return number && *number <= most ? number : std::nullopt;
    }
    const auto number = ParseWhole<int64_t>(value);
    const auto highest = static_cast<int64_t>(most >> 1);
    if (!number || *number > highest || *number < -highest - 1) return std::nullopt;
    return static_cast<uint64_t>(*number) & most;
}

std::optional<uint64_t> BitsOfFloat(const std::string& value, size_t size) {
    if (size == sizeof(double)) {
        const auto number = ParseWhole<double>(value);
        return number ? std::optional(BitCast<uint64_t>(*number)) : std::nullopt;
    }
    const auto number = ParseWhole<float>(value);
    return number ? std::optional<uint64_t>(BitCast<uint32_t>(*number)) : std::nullopt;
}

// Parses pairs of digits, with or without blanks between them.
std::optional<std::string> ParseHexBytes(const std::string& text) {
    std::string bytes;
    for (size_t at = 0; at < text.size();) {
        if (text[at] == ' ') {
            ++at;
            continue;
        }
        const char* const begin = text.data() + at;
        if (text.size() - at < 2) return std::nullopt;
        const auto byte = ParseWhole<uint8_t>({begin, 2}, 16);
        if (!byte) return std::nullopt;
        bytes += static_cast<char>(*byte);
        at += 2;
    }
    return bytes.empty() ? std::nullopt : std::optional(bytes);
}

std::string HexText(const std::string& bytes, const char* between) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        if (!text.empty()) text += between;
        text += kDigits[static_cast<uint8_t>(byte) >> 4];
        text += kDigits[static_cast<uint8_t>(byte) & 0xF];
    }
    return text;
}

}  // namespace

std::string OrderWords(ByteOrder order) {
    return order == ByteOrder::Little ? "little-endian" : "big-endian";
}

std::string AddressText(uint64_t address) {
    char text[20];
    std::snprintf(text, sizeof text, "0x%08llx", static_cast<unsigned long long>(address));
    return text;
}

const std::vector<std::string>& RegisterType::Names() {
    static const std::vector<std::string> kNames = {"hex", "text", "u8",  "u16", "u32", "u64",
                                                    "i8",  "i16",  "i32", "i64", "f32", "f64"};
    return kNames;
}

RegisterType::RegisterType(const std::string& name) : name_(name), kind_(name.front()) {
    if (IsNumber()) size_ = *ParseWhole<size_t>(name.substr(1)) / 8;
}

Json RegisterType::Value(const std::string& bytes, ByteOrder order) const {
    if (kind_ == 'h') return HexText(bytes, "");
    if (kind_ == 't') return bytes.substr(0, bytes.find('\0'));
    const uint64_t bits = BitsOf(InOrder(bytes, order));
    if (kind_ == 'u') return bits;
    if (kind_ == 'f') {
        return size_ == sizeof(double) ? BitCast<double>(bits)
                                       : Widened(BitCast<float>(static_cast<uint32_t>(bits)));
    }
    const size_t unused = 8 * (8 - size_);
    return static_cast<int64_t>(bits << unused) >> unused;
}

std::string RegisterType::NumberBytes(const std::string& value) const {
    const auto bits =
        kind_ == 'f' ? BitsOfFloat(value, size_) : BitsOfInteger(value, size_, kind_ == 'i');
    if (bits) return LittleEndian(*bits, size_);
    std::string what = "a floating-point number";
    if (kind_ == 'i') what = "a whole number, in decimal digits or as hexadecimal bits after 0x";
    if (kind_ == 'u') what = "a whole number without a sign, decimal or hexadecimal after 0x";
    throw Failure(ExitCode::Usage, "\"" + value + "\" is not of type " + name_ + ": give " + what +
                                       ", of " + std::to_string(size_) + " bytes");
}

std::string RegisterType::Bytes(const std::string& value, ByteOrder order) const {
    const std::string hex = "hex:";
    if (value.compare(0, hex.size(), hex) == 0 || kind_ == 'h') {
        const size_t from = value.compare(0, hex.size(), hex) == 0 ? hex.size() : 0;
        const auto bytes = ParseHexBytes(value.substr(from));
        if (bytes) return *bytes;
        throw Failure(ExitCode::Usage,
                      "\"" + value + "\" is not pairs of hexadecimal digits, such as hex:0a0b");
    }
    return kind_ == 't' ? value : InOrder(NumberBytes(value), order);
}

std::string HexDump(uint64_t address, const std::string& bytes) {
    constexpr size_t kPerLine = 16;
    std::string dump;
    for (size_t at = 0; at < bytes.size(); at += kPerLine) {
        std::string line = bytes.substr(at, kPerLine);
        std::string hex = HexText(line, " ");
        hex.resize(3 * kPerLine, ' ');
        std::replace_if(
            line.begin(), line.end(), [](char c) { return c < ' ' || c > '~'; }, '.');
        dump += AddressText(address + at) + "  " + hex + " |" + line + "|\n";
    }
    return dump;
}

}  // namespace ZelTool
