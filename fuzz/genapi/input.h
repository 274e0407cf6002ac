// The form of the inputs of the target "description": a description, and behind it the bytes that
// decide what is done with it and what the device answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Fuzz {

struct Input {
    std::string_view description;
    std::string_view script;
};

inline Input SplitInput(const uint8_t* data, size_t size) {
    constexpr std::string_view kEnd = "</RegisterDescription>";
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    const size_t end = all.rfind(kEnd);
    if (end == std::string_view::npos) return {all, {}};
    return {all.substr(0, end + kEnd.size()), all.substr(end + kEnd.size())};
}

}  // namespace Fuzz
