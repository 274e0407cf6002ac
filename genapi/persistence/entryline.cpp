#include "genapi/persistence/entryline.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

constexpr std::string_view kLineEnds("\n\r\0", 3);

std::string_view ViewOf(const gcstring& text) {
    return {text.c_str(), text.length()};
}

bool HasAny(std::string_view text, std::string_view characters) {
    return text.find_first_of(characters) != std::string_view::npos;
}

bool IsNameOfLine(std::string_view name) {
    constexpr std::string_view kBlanks(" \t\v\f");
    return !name.empty() && name.front() != '#' && !HasAny(name, kLineEnds) &&
           !HasAny(name, "\t") && !HasAny(name.substr(0, 1), kBlanks) &&
           !HasAny(name.substr(name.size() - 1), kBlanks);
}

}  // namespace

bool IsLine(const gcstring& name, const gcstring& value) {
    const std::string_view text = ViewOf(value);
    const bool looksLikeSelectors = text.substr(0, 1) == "{" && HasAny(text, "\t");
    return IsNameOfLine(ViewOf(name)) && !HasAny(text, kLineEnds) && !looksLikeSelectors;
}

gcstring InOneLine(const gcstring& text) {
    std::string line(text.c_str(), text.length());
    const auto isLineEnd = [](char c) { return kLineEnds.find(c) != std::string_view::npos; };
    std::replace_if(line.begin(), line.end(), isLineEnd, ' ');
    return gcstring(line.data(), line.size());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
