// Codes of the library as words for users.
#pragma once

#include <cstdint>
#include <string>

#include "ZelCam/ZelCam.h"

namespace ZelTool {

// The meaning of a code and its number: "another program uses it (-1004)".
std::string ErrorWords(ZelCamErr code);

// The state of a camera before it is opened, see ZelCam::DeviceInfo::GetAccessStatus.
std::string AccessWords(int32_t accessStatus);

std::string InterfaceTypeWords(ZelCam::InterfaceType type);

// The short name of an interface type, as producers report it.
std::string InterfaceTypeName(ZelCam::InterfaceType type);

// The library returns a null pointer for a missing text.
inline std::string TextOrEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

}  // namespace ZelTool
