// Archives made in memory.
#ifndef ZELSIM_ZIPARCHIVE_H
#define ZELSIM_ZIPARCHIVE_H

#include <string>

namespace ZelSim {

// The bytes of an archive with one file; the same for the same text. Throws std::runtime_error.
std::string ZipArchiveOf(const std::string& fileName, const std::string& text);

}  // namespace ZelSim

#endif  // ZELSIM_ZIPARCHIVE_H
