#include "genapi/persistence/samevalue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

#include <GenApi/IBoolean.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>
#include <GenApi/IRegister.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

// Texts have six digits by default, and a device may compute with 32 bits.
constexpr double kPrecision = 1e-6;

std::string_view withoutBlanks(std::string_view text) {
    constexpr const char* kBlanks = " \t\r\v\f";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) return false;
    text.remove_prefix(prefix.size());
    return true;
}

// Of the whole text.
template <typename Number, typename... Form>
std::optional<Number> parse(std::string_view text, Form... form) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, form...);
    return error == std::errc() && stop == end ? std::optional<Number>(number) : std::nullopt;
}

std::optional<int64_t> integerOf(std::string_view text) {
    text = withoutBlanks(text);
    if (takePrefix(text, "0x") || takePrefix(text, "0X")) {
        const auto bits = parse<uint64_t>(text, 16);
        return bits ? std::optional<int64_t>(static_cast<int64_t>(*bits)) : std::nullopt;
    }
    if (text.substr(0, 2) != "+-") takePrefix(text, "+");
    return parse<int64_t>(text, 10);
}

std::optional<double> numberOf(std::string_view text) {
    text = withoutBlanks(text);
    if (text.substr(0, 2) != "+-") takePrefix(text, "+");
    return parse<double>(text);
}

std::optional<bool> truthOf(std::string_view text) {
    text = withoutBlanks(text);
    if (text == "1" || text == "true") return true;
    if (text == "0" || text == "false") return false;
    return std::nullopt;
}

bool isNear(double a, double b) {
    return a == b || std::abs(a - b) <= kPrecision * std::max(std::abs(a), std::abs(b));
}

bool areSameDigits(std::string_view a, std::string_view b) {
    for (std::string_view* text : {&a, &b}) {
        *text = withoutBlanks(*text);
        if (!takePrefix(*text, "0x")) takePrefix(*text, "0X");
    }
    const auto lower = [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

std::string_view viewOf(const gcstring& text) {
    return {text.c_str(), text.length()};
}

}  // namespace

bool hasValue(IValue& feature, const gcstring& text) {
    const gcstring found = feature.ToString(true);
    if (found == text) return true;
    const std::string_view wanted = viewOf(text);
    switch (feature.GetNode()->GetPrincipalInterfaceType()) {
        case intfIInteger:
            return integerOf(wanted) == dynamic_cast<IInteger&>(feature).GetValue();
        case intfIBoolean:
            return truthOf(wanted) == dynamic_cast<IBoolean&>(feature).GetValue();
        case intfIRegister:
            return areSameDigits(wanted, viewOf(found));
        case intfIFloat: {
            const std::optional<double> number = numberOf(wanted);
            return number && isNear(*number, dynamic_cast<IFloat&>(feature).GetValue());
        }
        default:
            return false;
    }
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
