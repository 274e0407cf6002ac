// Failures of the library as words for users.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ZelCam/ZelCam.h"
#include "tools/zelcam/console/failure.h"

namespace ZelTool {

// The meaning of a code and its number: "another program uses it (-1004)".
std::string ErrorWords(ZelCamErr code);

// Throws Failure for any other code: `what`, and the words for the code.
void RequireSuccess(ZelCamErr code, const std::string& what,
                    ExitCode exitCode = ExitCode::FeatureFailed);

// Runs `action` and returns the failure if it throws.
std::optional<Failure> FailureOf(const std::function<void()>& action);

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
