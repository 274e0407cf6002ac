// Files that are there whole or not at all.
#ifndef ZELCAM_TOOLS_IMAGING_FILEWRITER_H
#define ZELCAM_TOOLS_IMAGING_FILEWRITER_H

#include <cstddef>
#include <string>

namespace Imaging {

// Writes a file in one piece: first under a temporary name in the same folder, then renamed, so
// that readers never see half a file and a failure leaves an older file as it was. Throws Error
// with the reason, also when something else than a file (a device, a folder) has that name.
void WriteFile(const std::string& path, const void* data, size_t size);

}  // namespace Imaging

#endif  // ZELCAM_TOOLS_IMAGING_FILEWRITER_H
