#include "ZelCameraApi/ipaddress.h"

#include <cstdint>
#include <exception>

namespace ZelCameraApi::Internal {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    size_t begin = 0;
    for (size_t end = text.find(separator); end != std::string::npos;
         end = text.find(separator, begin)) {
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

bool validateIpAddress(const std::string& text, unsigned int* value) {
    *value = 0;
    const std::vector<std::string> parts = split(text, '.');
    if (parts.size() != 4) return false;
    uint32_t address = 0;
    try {
        for (const std::string& part : parts)
            address = address << 8 | (static_cast<uint32_t>(std::stoi(part)) & 0xFF);
    } catch (const std::exception&) {  // not a number, or out of the range of int
        return false;
    }
    *value = address;
    return true;
}

}  // namespace ZelCameraApi::Internal
