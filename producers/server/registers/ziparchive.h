// Archives made in memory.
#pragma once

#include <string>

namespace ZelCti {

// The bytes of an archive with one file; the same for the same text. Throws std::runtime_error.
std::string ZipArchiveOf(const std::string& fileName, const std::string& text);

}  // namespace ZelCti
