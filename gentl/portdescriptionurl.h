// The URLs by which a port says where the description of its registers is.
#ifndef ZELCAM_GENTL_PORTDESCRIPTIONURL_H
#define ZELCAM_GENTL_PORTDESCRIPTIONURL_H

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace ZelUrl {

inline std::string UpperCase(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

// "SCHEME:///body". Cameras write the scheme in any case, and any number of slashes.
struct PortDescriptionUrl {
    std::string scheme;  // in upper case
    std::string path;    // all after the colon
    std::string body;    // that without its slashes
};

// None for a text without a colon or without a body.
inline std::optional<PortDescriptionUrl> SplitUrl(const std::string& url) {
    const size_t colon = url.find(':');
    if (colon == std::string::npos) return std::nullopt;
    const size_t begin = url.find_first_not_of('/', colon + 1);
    if (begin == std::string::npos) return std::nullopt;
    return PortDescriptionUrl{UpperCase(url.substr(0, colon)), url.substr(colon + 1),
                              url.substr(begin)};
}

// Of the scheme LOCAL: a file in the registers of the port.
struct LocalFile {
    std::string name;
    uint64_t address;
    uint64_t length;
    std::string query;  // with its question mark; may be empty
};

// "name.ext;address;length?query" with hexadecimal numbers, before which there may be blanks and
// "0x". None without two semicolons.
inline std::optional<LocalFile> ParseLocalFile(const std::string& body) {
    const size_t nameEnd = body.find(';');
    if (nameEnd == std::string::npos) return std::nullopt;
    const size_t addressEnd = body.find(';', nameEnd + 1);
    if (addressEnd == std::string::npos) return std::nullopt;
    const size_t lengthEnd = body.find('?', addressEnd);
    const auto number = [&body](size_t begin, size_t end) {
        const std::string digits = body.substr(begin, end - begin);
        return uint64_t{std::strtoull(digits.c_str(), nullptr, 16)};
    };
    return LocalFile{body.substr(0, nameEnd), number(nameEnd + 1, addressEnd),
                     number(addressEnd + 1, lengthEnd),
                     lengthEnd != std::string::npos ? body.substr(lengthEnd) : std::string()};
}

}  // namespace ZelUrl

#endif  // ZELCAM_GENTL_PORTDESCRIPTIONURL_H
