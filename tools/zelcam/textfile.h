// Whole files, and files for a while.
#ifndef ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
#define ZELCAM_TOOLS_ZELCAM_TEXTFILE_H

#include <cstdint>
#include <string>

#include "tools/zelcam/interrupt.h"

constexpr uint64_t longestFile = uint64_t{64} << 20;

// Failure (FileFailed) with the reason, also for a folder, a device or a pipe, and for a file of
// more than `longest` bytes.
std::string ReadFile(const std::string& file, uint64_t longest = longestFile);

// To its end. Failure: FileFailed as for a file, Interrupted at Ctrl-C.
std::string ReadStandardInput(uint64_t longest = longestFile);

// A file with a name of its own beside `file`, removed at the end. Failure (FileFailed) when it
// cannot be made.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& file);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Name() const { return name_; }

  private:
    std::string name_;
    RemovedWhenInterrupted removed_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
