// Small files of the kernel.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ZelTool {

// Without the line break at the end; nothing if the file cannot be read.
std::optional<std::string> ReadText(const std::string& file);

// Of a file that holds one number.
std::optional<uint64_t> ReadCount(const std::string& file);

}  // namespace ZelTool
