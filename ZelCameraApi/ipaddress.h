// IPv4 addresses as an application writes them.
#pragma once

#include <string>
#include <vector>

namespace ZelCameraApi::Internal {

// The parts between the separators, including empty parts.
std::vector<std::string> split(const std::string& text, char separator);

// Whether the text has four decimal parts. Parts are read by std::stoi and not checked for their
// range: only the lower eight bits of a part count. `*value` is the address, with the first part in
// the most significant byte, and 0 if the text is not an address.
bool validateIpAddress(const std::string& text, unsigned int* value);

}  // namespace ZelCameraApi::Internal
