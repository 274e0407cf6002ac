// Files that are replaced as a whole.
#pragma once

#include <string_view>

namespace ZelUtil {

// Replaces the content of a file. A reader always finds either the old or the new file, even after
// a loss of power. On failure, and without a name, nothing changes: the content is written to a
// temporary file in the same folder, ".zelcam-" and two numbers, which is then renamed. The
// temporary file remains only if the process is killed.
//
// An existing file keeps its permissions; the umask decides those of a new file. A write-protected
// file is not replaced. A symbolic link stays, and the file that it leads to is replaced; a link
// that leads nowhere is a failure. Devices and pipes are written directly.
//
// On failure, errno is what the system said, or 0 if it said nothing.
bool ReplaceFile(const char* fileName, std::string_view content);

}  // namespace ZelUtil
