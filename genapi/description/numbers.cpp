#include "genapi/description/numbers.h"

#include <charconv>
#include <string>

#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

template <typename T, typename... Options>
bool parseAll(std::string_view text, T& value, Options... options) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, options...);
    return error == std::errc() && stop == end;
}

bool isHex(std::string_view text) {
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    constexpr const char* kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool parse(std::string_view text, std::int64_t& value) {
    text = trimmed(text);
    if (isHex(text)) {
        std::uint64_t bits = 0;
        if (!parseAll(text.substr(2), bits, 16)) return false;
        value = static_cast<std::int64_t>(bits);
        return true;
    }
    if (!text.empty() && text[0] == '+') text.remove_prefix(1);
    return parseAll(text, value);
}

bool parse(std::string_view text, double& value) {
    text = trimmed(text);
    if (isHex(text)) {
        std::uint64_t bits = 0;
        if (!parseAll(text.substr(2), bits, 16)) return false;
        value = static_cast<double>(bits);
        return true;
    }
    if (!text.empty() && text[0] == '+') text.remove_prefix(1);
    return parseAll(text, value);
}

const char* nameOf(Element element) {
    static constexpr const char* kNames[] = {
#define GENAPI_ELEMENT(name) #name,
        GENAPI_TEXT_ELEMENTS(GENAPI_ELEMENT) GENAPI_LINK_ELEMENTS(GENAPI_ELEMENT)
#undef GENAPI_ELEMENT
    };
    return kNames[static_cast<std::size_t>(element)];
}

const char* typeName(const std::int64_t*) {
    return "int64_t";
}

const char* typeName(const double*) {
    return "double";
}

void throwNoNumber(Element element, std::string_view text, const char* type) {
    throw PROPERTY_EXCEPTION("Error in property of type '%s': cannot convert '%s' to %s",
                             nameOf(element), std::string(text).c_str(), type);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
