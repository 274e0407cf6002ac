// Codes of the library in words.
#ifndef ZELCAM_TOOLS_ZELCAM_WORDS_H
#define ZELCAM_TOOLS_ZELCAM_WORDS_H

#include <cstdint>
#include <string>

#include "ZelCam/ZelCam.h"

// What went wrong, with the number: "somebody else uses it (-1004)".
std::string ErrorWords(ZelCamErr code);

// State of a camera before it is opened, see ZelCam::DeviceInfo::GetAccessStatus.
std::string AccessWords(int32_t accessStatus);

std::string InterfaceTypeWords(ZelCam::InterfaceType type);

// The short name of an interface type, as producers write it.
std::string InterfaceTypeName(ZelCam::InterfaceType type);

// The library tells nothing with a null pointer.
inline std::string TextOrEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

#endif  // ZELCAM_TOOLS_ZELCAM_WORDS_H
