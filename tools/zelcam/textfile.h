// Whole files.
#ifndef ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
#define ZELCAM_TOOLS_ZELCAM_TEXTFILE_H

#include <string>

// Both throw Failure (FileFailed) with the reason.
std::string ReadFile(const std::string& file);
void WriteFile(const std::string& file, const std::string& text);

#endif  // ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
