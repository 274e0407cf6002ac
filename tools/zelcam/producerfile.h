// Producer files as files: where they are looked for, and what is wrong with one.
#ifndef ZELCAM_TOOLS_ZELCAM_PRODUCERFILE_H
#define ZELCAM_TOOLS_ZELCAM_PRODUCERFILE_H

#include <string>
#include <vector>

// Name under which the dynamic loader looks for the default producer.
constexpr const char* defaultProducerName = "libZelCTI.cti";

// Why a file cannot be a producer of this machine, as far as the file itself shows: missing,
// unreadable, not a shared library, built for another machine. Empty when nothing is wrong with it.
std::string WhyNotLoadable(const std::string& path);

// The file that the loader takes for the default producer: the one loaded now, else the first one
// in the folders of LD_LIBRARY_PATH and beside the library. Empty when there is none.
std::string FindDefaultProducer();

// Folders where FindDefaultProducer looks, for messages.
std::vector<std::string> DefaultProducerFolders();

// The folders of a list like that of GENICAM_GENTL64_PATH, separated by colons.
std::vector<std::string> SplitPathList(const std::string& list);

// The producer files (*.cti) in a folder, sorted; throws std::filesystem::filesystem_error when it
// cannot be read.
std::vector<std::string> ProducerFilesIn(const std::string& folder);

#endif  // ZELCAM_TOOLS_ZELCAM_PRODUCERFILE_H
