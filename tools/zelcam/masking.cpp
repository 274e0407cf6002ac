#include "tools/zelcam/masking.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <regex>
#include <vector>

namespace {

constexpr const char* masked = "***";

void ReplaceAll(std::string& text, const std::string& secret) {
    for (size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
        text.replace(at, secret.size(), masked);
        at += std::strlen(masked);
    }
}

}  // namespace

void Mask::AddSecret(const std::string& secret) {
    constexpr size_t shortest = 4;
    if (secret.size() >= shortest) secrets_.insert(secret);
}

std::string Mask::Apply(const std::string& text) const {
    // Four numbers with dots, and six pairs of digits with a sign between.
    static const std::regex addresses(
        R"(\b\d{1,3}(\.\d{1,3}){3}\b|\b[0-9A-Fa-f]{2}([:-][0-9A-Fa-f]{2}){5}\b)");
    std::string result = std::regex_replace(text, addresses, masked);
    // Longer ones first: a secret may begin another one.
    std::vector<std::string> ordered(secrets_.begin(), secrets_.end());
    std::sort(ordered.begin(), ordered.end(),
              [](const auto& a, const auto& b) { return a.size() > b.size(); });
    for (const std::string& secret : ordered)
        ReplaceAll(result, secret);
    return result;
}

bool IsSecretFeature(const std::string& name) {
    constexpr std::array<const char*, 9> words = {"Serial",  "IPAddress", "SubnetMask",
                                                  "MAC",     "Gateway",   "DestinationAddress",
                                                  "GevSCDA", "GevMCDA",   "UserID"};
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return name.find(word) != std::string::npos; });
}
