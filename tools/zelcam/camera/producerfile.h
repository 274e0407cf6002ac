// Finds producer files and checks them before they are loaded.
#pragma once

#include <string>
#include <vector>

namespace ZelTool {

// The name of the default producer for the dynamic loader.
constexpr const char* kDefaultProducerName = "libZelCTI.cti";

// Why the file cannot be loaded: it is missing, unreadable, not a shared library, or built for
// another machine. Empty when none of these applies.
std::string WhyNotLoadable(const std::string& path);

// The file of the default producer: the loaded one, else the first in the folders of
// LD_LIBRARY_PATH and beside the library. Empty when no such file exists.
std::string FindDefaultProducer();

// The folders that FindDefaultProducer searches, for messages.
std::vector<std::string> DefaultProducerFolders();

// The folders of a list separated by colons, such as GENICAM_GENTL64_PATH.
std::vector<std::string> SplitPathList(const std::string& list);

// The producer files (*.cti) in a folder, sorted. Throws std::filesystem::filesystem_error when the
// folder cannot be read.
std::vector<std::string> ProducerFilesIn(const std::string& folder);

}  // namespace ZelTool
