// Where the description of a module's features comes from: files, and the URLs that ports announce.
#pragma once

#include <memory>
#include <string>

#include <GenApi/GenApi.h>

#include "ZelCameraApi/base/gentlmodule.h"

namespace ZelCameraApi::Internal {

// Both loaders give a node map called `moduleId`. They throw what GenApi throws for a description
// that it cannot load.

// A description file that the user names. Null when its extension (of which three characters count)
// is neither "xml" nor "zip". Throws zelcam_exception with ZelCamErr_FileOpenFailed when it cannot
// be opened.
std::unique_ptr<GenApi::CNodeMapRef> LoadDescriptionFile(const char* path,
                                                         const GenICam::gcstring& moduleId);

// What the URL of a port leads to: "Local:name.ext;address;length?query" to registers of the port,
// with hexadecimal numbers, "File:path" to a regular file of this machine with the extension "xml"
// or "zip": a device must not make the library open another. Throws RuntimeException for every
// other URL, for a register range that cannot be a description and for a file that is no such, and
// zelcam_exception when the port cannot be read.
std::unique_ptr<GenApi::CNodeMapRef> LoadDescriptionUrl(const GenTLModule<void*>& port,
                                                        const std::string& url,
                                                        const GenICam::gcstring& moduleId);

}  // namespace ZelCameraApi::Internal
