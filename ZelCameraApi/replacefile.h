// Files that are replaced as a whole.
#pragma once

#include <string_view>

namespace ZelCameraApi::Internal {

// Gives a file a new content. Whoever opens it, also after a loss of power, finds the former file
// or the new one. On failure, and without a name, nothing changes: the content is written to a
// temporary file in the same folder, ".zelcam-" and two numbers, which then takes the name. Only a
// process that is killed leaves it behind.
//
// The permissions of a former file stay, those of a new one follow the umask. A former file that
// may not be written is not replaced. A symbolic link stays, and the file that it leads to is
// replaced; one that leads nowhere is a failure. Devices and pipes are written to.
bool ReplaceFile(const char* fileName, std::string_view content);

}  // namespace ZelCameraApi::Internal
