// GenApi descriptions as texts.
#ifndef ZELCAM_TOOLS_ZELCAM_DESCRIPTION_H
#define ZELCAM_TOOLS_ZELCAM_DESCRIPTION_H

#include <cstdint>
#include <optional>
#include <string>

// "Local:name.zip;F0F00000;3BF" and "File:///path/name.xml" taken apart.
struct DescriptionUrl {
    bool local = false;  // in registers, else in a file
    std::string file;    // its name, or for a file its path
    uint64_t address = 0;
    uint64_t size = 0;
};

// Nothing for another form, a place in the network for instance, and for a file that is neither
// .xml nor .zip: a camera must not have any file of the machine printed.
std::optional<DescriptionUrl> ParseDescriptionUrl(const std::string& url);

// The contents of a file that a camera names. Failure (FileFailed) when it cannot be read, is not a
// regular file or is too large for a description.
std::string ReadDescriptionFile(const std::string& file);

// The text in a file that is a description or an archive with one. Failure (FileFailed) when an
// archive has none or is damaged.
std::string Unpack(std::string bytes);

#endif  // ZELCAM_TOOLS_ZELCAM_DESCRIPTION_H
