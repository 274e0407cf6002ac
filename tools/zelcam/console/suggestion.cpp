#include "tools/zelcam/console/suggestion.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <strings.h>
#include <utility>

namespace ZelTool {

namespace {

bool IsSameLetter(char a, char b) {
    return strncasecmp(&a, &b, 1) == 0;
}

// How many letters must be inserted, removed or replaced to turn `a` into `b`.
size_t Distance(const std::string& a, const std::string& b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = std::exchange(row[0], i + 1);
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t replaced = diagonal + (IsSameLetter(a[i], b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

bool Holds(const std::string& text, const std::string& part) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), IsSameLetter) !=
           text.end();
}

// A small number for similar texts, nothing for different ones. Names that only contain `wanted`
// come after all misspelled ones.
std::optional<size_t> Unlikeness(const std::string& wanted, const std::string& name) {
    constexpr size_t kPart = 100;
    const size_t distance = Distance(wanted, name);
    if (distance <= 1 + wanted.size() / 4) return distance;
    return Holds(name, wanted) ? std::optional(kPart + distance) : std::nullopt;
}

}  // namespace

std::string DidYouMean(const std::string& wanted, const std::vector<std::string>& names) {
    constexpr size_t kLongest = 100;  // longer texts are not names, and comparing them takes long
    constexpr size_t kEnough = 3;
    if (wanted.empty() || wanted.size() > kLongest) return "";
    std::vector<std::pair<size_t, std::string>> alike;
    for (const std::string& name : names) {
        const auto unlikeness = Unlikeness(wanted, name);
        if (unlikeness) alike.emplace_back(*unlikeness, name);
    }
    std::sort(alike.begin(), alike.end());
    std::string text;
    for (size_t i = 0; i < alike.size() && i < kEnough; ++i)
        text += (i == 0 ? "; did you mean " : " or ") + alike[i].second;
    return text.empty() ? "" : text + "?";
}

}  // namespace ZelTool
