// IPv4 addresses as an application writes them.
#pragma once

#include <string>
#include <vector>

namespace ZelCameraApi::Internal {

// The parts between the separators, empty ones too.
std::vector<std::string> split(const std::string& text, char separator);

// Whether the text has four decimal parts. Parts are read as std::stoi does and not checked for
// their range: what exceeds a part's eight bits is dropped. `*value` is the address, the first part
// in the most significant byte, and 0 for a text that is none.
bool validateIpAddress(const std::string& text, unsigned int* value);

}  // namespace ZelCameraApi::Internal
