#include "tools/zelcam/suggestion.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <strings.h>
#include <utility>

namespace {

bool IsSameLetter(char a, char b) {
    return strncasecmp(&a, &b, 1) == 0;
}

// How many letters must be put in, left out or replaced to make `b` of `a`.
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

// The less, the more alike; nothing when they are not alike at all. A part of a name comes behind
// all names with slips.
std::optional<size_t> Unlikeness(const std::string& wanted, const std::string& name) {
    constexpr size_t part = 100;
    const size_t distance = Distance(wanted, name);
    if (distance <= 1 + wanted.size() / 4) return distance;
    return Holds(name, wanted) ? std::optional(part + distance) : std::nullopt;
}

}  // namespace

std::string DidYouMean(const std::string& wanted, const std::vector<std::string>& names) {
    constexpr size_t longest = 100;  // what is longer is no name, and takes long to compare
    constexpr size_t enough = 3;
    if (wanted.empty() || wanted.size() > longest) return "";
    std::vector<std::pair<size_t, std::string>> alike;
    for (const std::string& name : names) {
        const auto unlikeness = Unlikeness(wanted, name);
        if (unlikeness) alike.emplace_back(*unlikeness, name);
    }
    std::sort(alike.begin(), alike.end());
    std::string text;
    for (size_t i = 0; i < alike.size() && i < enough; ++i)
        text += (i == 0 ? "; did you mean " : " or ") + alike[i].second;
    return text.empty() ? "" : text + "?";
}
