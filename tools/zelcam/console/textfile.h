// Files read as a whole, and temporary files.
#pragma once

#include <cstdint>
#include <string>

#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

constexpr uint64_t kLongestFile = uint64_t{64} << 20;

// Throws Failure (FileFailed) with the reason, also for a folder, a device or a pipe, and for a
// file of more than `longest` bytes.
std::string ReadFile(const std::string& file, uint64_t longest = kLongestFile);

// Reads until the end of the input. Throws Failure: FileFailed like ReadFile, Interrupted at
// Ctrl-C.
std::string ReadStandardInput(uint64_t longest = kLongestFile);

// An empty file with a unique name beside `file`, removed by the destructor. The constructor throws
// Failure (FileFailed).
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

}  // namespace ZelTool
