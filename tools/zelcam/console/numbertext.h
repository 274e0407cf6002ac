// Numbers as users write them. A parser reads the whole text: anything left over is an error.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace ZelTool {

// A number in the syntax of std::from_chars. `form` is the base of an integer.
template <typename Number, typename... Form>
std::optional<Number> ParseWhole(std::string_view text, Form... form) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, form...);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// A number of up to 64 bits in decimal digits, without sign or blanks.
std::optional<uint64_t> ParseCount(const std::string& text);

// A number in decimal digits, or in hexadecimal digits after "0x".
std::optional<uint64_t> ParseUnsigned(const std::string& text);

// A number in decimal digits, or in hexadecimal digits after "0x", with or without a sign. Sixteen
// hexadecimal digits without a sign may be the bits of a negative number.
std::optional<int64_t> ParseInteger(const std::string& text);

// A decimal number with all the digits that the user wrote.
class Decimal {
  public:
    // The number at the beginning of the text; `rest` gets what follows it. Nothing when the text
    // does not begin with a number.
    static std::optional<Decimal> Parse(const std::string& text, std::string& rest);

    Decimal TimesTenTo(int power) const;
    bool HasExponent() const { return hasExponent_; }

    std::optional<int64_t> Whole() const;   // nothing for a fraction or more than 64 bits
    std::optional<double> Nearest() const;  // nothing outside the range of double

  private:
    bool negative_ = false;
    bool hasExponent_ = false;  // the user wrote one
    std::string digits_;        // without zeros at either end; empty for 0
    int64_t exponent_ = 0;      // the number is digits_ * 10^exponent_
};

// The power of ten that converts a number in the unit `from` into the unit `to`: 3 from "ms" to
// "us". Nothing when the units do not convert into each other.
std::optional<int> PowerBetween(const std::string& from, const std::string& to);

}  // namespace ZelTool
