#include "genapi/description/numbers.h"

#include <algorithm>
#include <charconv>
#include <string>

#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Whether a number begins the text; the text loses it then.
template <typename T, typename... Options>
bool take(std::string_view& text, T& value, Options... options) {
    const auto [stop, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, options...);
    if (error != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return true;
}

constexpr const char* kBlanks = " \t\r\n\f\v";

bool isHex(std::string_view text) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

std::string_view withoutPlus(std::string_view text) {
    const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    return text.substr(hasPlus ? 1 : 0);
}

bool takeInteger(std::string_view& text, std::int64_t& value) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (!isHex(text)) return take(text = withoutPlus(text), value);
    text.remove_prefix(2);
    return text[0] != '-' && take(text, value, 16);
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool parse(std::string_view text, std::int64_t& value) {
    return takeInteger(text, value) && text.empty();
}

bool parseFront(std::string_view text, std::int64_t& value) {
    return takeInteger(text, value);
}

bool parse(std::string_view text, double& value) {
    text = trimmed(text);
    const bool hex = isHex(text);
    text = hex ? text.substr(2) : withoutPlus(text);
    const auto format = hex ? std::chars_format::hex : std::chars_format::general;
    return (!hex || text[0] != '-') && take(text, value, format) && text.empty();
}

const char* nameOf(Element element) {
    static constexpr const char* kNames[] = {
#define GENAPI_ELEMENT(name) #name,
        GENAPI_TEXT_ELEMENTS(GENAPI_ELEMENT) GENAPI_LINK_ELEMENTS(GENAPI_ELEMENT)
#undef GENAPI_ELEMENT
    };
    return kNames[static_cast<std::size_t>(element)];
}

std::int64_t integerOf(std::string_view text, std::string_view property) {
    std::int64_t value = 0;
    if (!parse(text, value))
        throw PROPERTY_EXCEPTION("Error in property of type '%s': cannot convert '%s' to int64_t",
                                 std::string(property).c_str(), std::string(text).c_str());
    return value;
}

std::int64_t integerOf(std::string_view text, Element element) {
    // Two elements go by a number in messages.
    if (element == Element::Bit) return integerOf(text, "Invalid PropertyID 113");
    if (element == Element::Constant) return integerOf(text, "Invalid PropertyID 114");
    return integerOf(text, nameOf(element));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
