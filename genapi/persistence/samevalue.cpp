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

// Texts show six digits by default, and a device may compute with 32 bits.
constexpr double kPrecision = 1e-6;

std::string_view WithoutBlanks(std::string_view text) {
    constexpr const char* kBlanks = " \t\r\v\f";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) return false;
    text.remove_prefix(prefix.size());
    return true;
}

// Parses the whole text.
template <typename Number, typename... Form>
std::optional<Number> Parse(std::string_view text, Form... form) {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, form...);
    return error == std::errc() && stop == end ? std::optional<Number>(number) : std::nullopt;
}

std::optional<int64_t> IntegerOf(std::string_view text) {
    text = WithoutBlanks(text);
    if (TakePrefix(text, "0x") || TakePrefix(text, "0X")) {
        const auto bits = Parse<uint64_t>(text, 16);
        return bits ? std::optional<int64_t>(static_cast<int64_t>(*bits)) : std::nullopt;
    }
    if (text.substr(0, 2) != "+-") TakePrefix(text, "+");
    return Parse<int64_t>(text, 10);
}

std::optional<double> FloatOf(std::string_view text) {
    text = WithoutBlanks(text);
    if (text.substr(0, 2) != "+-") TakePrefix(text, "+");
    return Parse<double>(text);
}

std::optional<bool> TruthOf(std::string_view text) {
    text = WithoutBlanks(text);
    if (text == "1" || text == "true") return true;
    if (text == "0" || text == "false") return false;
    return std::nullopt;
}

bool IsNear(double a, double b) {
    return a == b || std::abs(a - b) <= kPrecision * std::max(std::abs(a), std::abs(b));
}

bool AreSameDigits(std::string_view a, std::string_view b) {
    for (std::string_view* text : {&a, &b}) {
        *text = WithoutBlanks(*text);
        if (!TakePrefix(*text, "0x")) TakePrefix(*text, "0X");
    }
    const auto lower = [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

std::string_view ViewOf(const gcstring& text) {
    return {text.c_str(), text.length()};
}

}  // namespace

bool HasValue(IValue& feature, const gcstring& text) {
    const gcstring found = feature.ToString(true);
    if (found == text) return true;
    const std::string_view wanted = ViewOf(text);
    switch (feature.GetNode()->GetPrincipalInterfaceType()) {
        case intfIInteger:
            return IntegerOf(wanted) == dynamic_cast<IInteger&>(feature).GetValue();
        case intfIBoolean:
            return TruthOf(wanted) == dynamic_cast<IBoolean&>(feature).GetValue();
        case intfIRegister:
            return AreSameDigits(wanted, ViewOf(found));
        case intfIFloat: {
            const std::optional<double> number = FloatOf(wanted);
            return number && IsNear(*number, dynamic_cast<IFloat&>(feature).GetValue());
        }
        default:
            return false;
    }
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
