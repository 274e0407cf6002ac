#include "tools/zelcam/commands/masking.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <regex>
#include <vector>

namespace ZelTool {

namespace {

constexpr const char* kMasked = "***";

void ReplaceAll(std::string& text, const std::string& secret) {
    for (size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
        text.replace(at, secret.size(), kMasked);
        at += std::strlen(kMasked);
    }
}

}  // namespace

void Mask::AddSecret(const std::string& secret) {
    constexpr size_t kShortest = 4;
    if (secret.size() >= kShortest) secrets_.insert(secret);
}

std::string Mask::Apply(const std::string& text) const {
    if (!active_) return text;
    // IPv4 addresses and hardware addresses.
    static const std::regex kAddresses(
        R"(\b\d{1,3}(\.\d{1,3}){3}\b|\b[0-9A-Fa-f]{2}([:-][0-9A-Fa-f]{2}){5}\b)");
    std::string result = std::regex_replace(text, kAddresses, kMasked);
    // Longer ones first: a secret may be the beginning of another one.
    std::vector<std::string> ordered(secrets_.begin(), secrets_.end());
    std::sort(ordered.begin(), ordered.end(),
              [](const auto& a, const auto& b) { return a.size() > b.size(); });
    for (const std::string& secret : ordered)
        ReplaceAll(result, secret);
    return result;
}

bool IsSecretFeature(const std::string& name) {
    constexpr std::array<const char*, 9> kWords = {"Serial",  "IPAddress", "SubnetMask",
                                                   "MAC",     "Gateway",   "DestinationAddress",
                                                   "GevSCDA", "GevMCDA",   "UserID"};
    return std::any_of(kWords.begin(), kWords.end(),
                       [&](const char* word) { return name.find(word) != std::string::npos; });
}

}  // namespace ZelTool
