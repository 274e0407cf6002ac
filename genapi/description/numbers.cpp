#include "genapi/description/numbers.h"

#include <algorithm>
#include <charconv>
#include <string>

#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Removes a number from the beginning of the text; false if there is none.
template <typename T, typename... Options>
bool Take(std::string_view& text, T& value, Options... options) {
    const auto [stop, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, options...);
    if (error != std::errc()) return false;
    text.remove_prefix(static_cast<size_t>(stop - text.data()));
    return true;
}

constexpr const char* kBlanks = " \t\r\n\f\v";

bool IsHex(std::string_view text) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

std::string_view WithoutPlus(std::string_view text) {
    const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    return text.substr(hasPlus ? 1 : 0);
}

bool TakeInteger(std::string_view& text, int64_t& value) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (!IsHex(text)) return Take(text = WithoutPlus(text), value);
    text.remove_prefix(2);
    return text[0] != '-' && Take(text, value, 16);
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool Parse(std::string_view text, int64_t& value) {
    return TakeInteger(text, value) && text.empty();
}

bool ParseFront(std::string_view text, int64_t& value) {
    return TakeInteger(text, value);
}

bool Parse(std::string_view text, double& value) {
    text = Trimmed(text);
    const bool hex = IsHex(text);
    text = hex ? text.substr(2) : WithoutPlus(text);
    const auto format = hex ? std::chars_format::hex : std::chars_format::general;
    return (!hex || text[0] != '-') && Take(text, value, format) && text.empty();
}

const char* NameOf(Element element) {
    static constexpr const char* kNames[] = {
#define GENAPI_ELEMENT(name) #name,
        GENAPI_TEXT_ELEMENTS(GENAPI_ELEMENT) GENAPI_LINK_ELEMENTS(GENAPI_ELEMENT)
#undef GENAPI_ELEMENT
    };
    return kNames[static_cast<size_t>(element)];
}

int64_t IntegerOf(std::string_view text, std::string_view property) {
    int64_t value = 0;
    if (!Parse(text, value))
        throw PROPERTY_EXCEPTION("Error in property of type '%s': cannot convert '%s' to int64_t",
                                 std::string(property).c_str(), std::string(text).c_str());
    return value;
}

int64_t IntegerOf(std::string_view text, Element element) {
    // Messages name two elements by a number.
    if (element == Element::Bit) return IntegerOf(text, "Invalid PropertyID 113");
    if (element == Element::Constant) return IntegerOf(text, "Invalid PropertyID 114");
    return IntegerOf(text, NameOf(element));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
