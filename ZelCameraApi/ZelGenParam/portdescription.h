// Loads the description of a module's features from files and from the URLs that ports announce.
#pragma once

#include <memory>
#include <string>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/base/gentlmodule.h"

namespace ZelCameraApi::Internal {

// Both loaders return a node map with the name `moduleId`. They throw what GenApi throws for a
// description that it cannot load.

// A description file that the user names. Null if the first three characters of its extension are
// neither "xml" nor "zip". Throws zelcam_exception with ZelCamErr_FileOpenFailed if the file cannot
// be opened.
std::unique_ptr<GenApi::CNodeMapRef> LoadDescriptionFile(const char* path,
                                                         const GenICam::gcstring& moduleId);

// The description at the URL of a port. "Local:name.ext;address;length?query" names registers of
// the port, with hexadecimal numbers. "File:path" names a regular file of this machine with the
// extension "xml" or "zip"; a device must not make the library open other files. Throws
// RuntimeException for every other URL or file and for a register range that cannot be a
// description, and zelcam_exception if the port cannot be read.
std::unique_ptr<GenApi::CNodeMapRef> LoadDescriptionUrl(const GenTLModule<void*>& port,
                                                        const std::string& url,
                                                        const GenICam::gcstring& moduleId);

}  // namespace ZelCameraApi::Internal
