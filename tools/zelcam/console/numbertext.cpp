#include "tools/zelcam/console/numbertext.h"

#include <algorithm>

namespace ZelTool {

namespace {

constexpr const char* kDecimalDigits = "0123456789";

size_t SignLength(const std::string& text) {
    return !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
}

bool IsHexadecimal(const std::string& text, size_t at) {
    return text.compare(at, 2, "0x") == 0 || text.compare(at, 2, "0X") == 0;
}

// The digits that begin at `at`, which moves behind them.
std::string TakeDigits(const std::string& text, size_t& at) {
    const size_t end = std::min(text.find_first_not_of(kDecimalDigits, at), text.size());
    std::string digits = text.substr(at, end - at);
    at = end;
    return digits;
}

// The number in an exponent such as "e-3" at `at`, which moves behind it. Nothing, and `at` stays,
// when there is no exponent.
std::optional<int64_t> TakeExponent(const std::string& text, size_t& at) {
    if (at >= text.size() || (text[at] != 'e' && text[at] != 'E')) return std::nullopt;
    size_t end = at + 1;
    const bool negative = end < text.size() && text[end] == '-';
    if (end < text.size() && (text[end] == '-' || text[end] == '+')) ++end;
    const std::string digits = TakeDigits(text, end);
    if (digits.empty()) return std::nullopt;
    at = end;
    // No number has a larger exponent.
    constexpr int64_t kMost = 1000000000;
    const int64_t size = std::min(ParseWhole<int64_t>(digits).value_or(kMost), kMost);
    return negative ? -size : size;
}

// Replaces the signs for micro, two in UTF-8 and one in Latin-1, by "u".
std::string WithoutMicro(std::string unit) {
    for (const char* micro : {"\xC2\xB5", "\xCE\xBC", "\xB5"}) {
        const size_t at = unit.find(micro);
        if (at != std::string::npos) return unit.replace(at, std::string(micro).size(), "u");
    }
    return unit;
}

constexpr struct Unit {
    const char* name;
    char quantity;  // units of one quantity convert into each other
    int power;
} kUnits[] = {{"ns", 't', -9}, {"us", 't', -6},  {"ms", 't', -3},  {"s", 't', 0},
              {"Hz", 'f', 0},  {"kHz", 'f', 3},  {"MHz", 'f', 6},  {"GHz", 'f', 9},
              {"Bps", 'r', 0}, {"kBps", 'r', 3}, {"MBps", 'r', 6}, {"GBps", 'r', 9}};

const Unit* FindUnit(const std::string& name) {
    const auto* const found = std::find_if(std::begin(kUnits), std::end(kUnits),
                                           [&](const Unit& unit) { return unit.name == name; });
    return found == std::end(kUnits) ? nullptr : found;
}

}  // namespace

std::optional<uint64_t> ParseCount(const std::string& text) {
    return ParseWhole<uint64_t>(text);
}

std::optional<uint64_t> ParseUnsigned(const std::string& text) {
    if (!IsHexadecimal(text, 0)) return ParseCount(text);
    return ParseWhole<uint64_t>(std::string_view(text).substr(2), 16);
}

std::optional<int64_t> ParseInteger(const std::string& text) {
    const size_t sign = SignLength(text);
    if (!IsHexadecimal(text, sign)) {
        if (sign < text.size() && text[sign] == '-') return std::nullopt;  // "+-1"
        return ParseWhole<int64_t>(std::string_view(text).substr(text[0] == '+' ? 1 : 0));
    }
    const auto bits = ParseWhole<uint64_t>(std::string_view(text).substr(sign + 2), 16);
    if (!bits) return std::nullopt;
    if (sign == 0) return static_cast<int64_t>(*bits);
    if (*bits > INT64_MAX) return std::nullopt;
    return text[0] == '-' ? -static_cast<int64_t>(*bits) : static_cast<int64_t>(*bits);
}

std::optional<Decimal> Decimal::Parse(const std::string& text, std::string& rest) {
    Decimal number;
    size_t at = SignLength(text);
    number.negative_ = at != 0 && text[0] == '-';
    number.digits_ = TakeDigits(text, at);
    std::string fraction;
    if (at < text.size() && text[at] == '.') fraction = TakeDigits(text, ++at);
    number.digits_ += fraction;
    if (number.digits_.empty()) return std::nullopt;
    const std::optional<int64_t> exponent = TakeExponent(text, at);
    number.hasExponent_ = exponent.has_value();
    number.exponent_ = exponent.value_or(0) - static_cast<int64_t>(fraction.size());
    const size_t last = number.digits_.find_last_not_of('0') + 1;
    number.exponent_ += static_cast<int64_t>(number.digits_.size() - last);
    number.digits_.resize(last);
    number.digits_.erase(0, std::min(number.digits_.find_first_not_of('0'), last));
    rest = text.substr(at);
    return number;
}

Decimal Decimal::TimesTenTo(int power) const {
    Decimal product = *this;
    product.exponent_ += power;
    return product;
}

std::optional<int64_t> Decimal::Whole() const {
    constexpr int64_t kMostDigits = 19;
    if (digits_.empty()) return 0;
    if (exponent_ < 0 || exponent_ > kMostDigits) return std::nullopt;
    return ParseWhole<int64_t>((negative_ ? "-" : "") + digits_ +
                               std::string(static_cast<size_t>(exponent_), '0'));
}

std::optional<double> Decimal::Nearest() const {
    if (digits_.empty()) return 0;
    return ParseWhole<double>((negative_ ? "-" : "") + digits_ + "e" + std::to_string(exponent_));
}

std::optional<int> PowerBetween(const std::string& from, const std::string& to) {
    const std::string plainFrom = WithoutMicro(from);
    const std::string plainTo = WithoutMicro(to);
    if (plainFrom == plainTo) return 0;
    const Unit* const a = FindUnit(plainFrom);
    const Unit* const b = FindUnit(plainTo);
    if (a == nullptr || b == nullptr || a->quantity != b->quantity) return std::nullopt;
    return a->power - b->power;
}

}  // namespace ZelTool
