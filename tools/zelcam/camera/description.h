// Finds and unpacks the text of a GenApi description.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ZelTool {

// The parts of a URL such as "Local:name.zip;F0F00000;3BF" or "File:///path/name.xml".
struct DescriptionUrl {
    bool local = false;  // in registers; else in a file
    std::string file;    // its path, or just a name for a description in registers
    uint64_t address = 0;
    uint64_t size = 0;
};

// Nothing for any other URL, and for a file that is neither .xml nor .zip: a camera must not be
// able to make the program print other files.
std::optional<DescriptionUrl> ParseDescriptionUrl(const std::string& url);

// The contents of a file that a camera names. Throws Failure (FileFailed) when the file cannot be
// read, is not a regular file, or is too large for a description.
std::string ReadDescriptionFile(const std::string& file);

// The text of a description, which may be packed in a ZIP archive. Throws Failure (FileFailed) for
// an empty or damaged archive.
std::string Unpack(std::string bytes);

}  // namespace ZelTool
