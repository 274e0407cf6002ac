// Numbers as users write them. They are read whole: whatever is not part of one is an error.
#ifndef ZELCAM_TOOLS_ZELCAM_NUMBERTEXT_H
#define ZELCAM_TOOLS_ZELCAM_NUMBERTEXT_H

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

// As std::from_chars reads it; `form` is the base of an integer.
template <typename Number, typename... Form>
std::optional<Number> ParseWhole(std::string_view text, Form... form) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, form...);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// Of decimal digits only: no sign, no blank, nothing beyond 64 bits.
std::optional<uint64_t> ParseCount(const std::string& text);

// Of decimal digits, or hexadecimal ones after "0x".
std::optional<uint64_t> ParseUnsigned(const std::string& text);

// Of decimal digits, or hexadecimal ones after "0x", both with a sign or not. Sixteen hexadecimal
// digits may be the bits of a negative number.
std::optional<int64_t> ParseInteger(const std::string& text);

// Exactly what was written, with as many digits.
class Decimal {
  public:
    // The number with which the text begins; the rest of the text goes to `rest`. Nothing when it
    // begins with none.
    static std::optional<Decimal> Parse(const std::string& text, std::string& rest);

    Decimal TimesTenTo(int power) const;
    bool HasExponent() const { return hasExponent_; }

    std::optional<int64_t> Whole() const;   // nothing for a fraction, or beyond 64 bits
    std::optional<double> Nearest() const;  // nothing beyond the range of double

  private:
    bool negative_ = false;
    bool hasExponent_ = false;  // an exponent was
    std::string digits_;        // without zeros at either end; empty for 0
    int64_t exponent_ = 0;      // of ten, behind the digits
};

// The power of ten by which a number of the unit `from` is multiplied to be one of the unit `to`:
// 3 from "ms" to "us". Nothing when neither is the other.
std::optional<int> PowerBetween(const std::string& from, const std::string& to);

#endif  // ZELCAM_TOOLS_ZELCAM_NUMBERTEXT_H
