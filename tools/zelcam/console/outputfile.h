// Files that the program writes.
#pragma once

#include <cstddef>
#include <string>

#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

// The file name that means standard output, or standard input for a file to read.
constexpr const char* kStandardStream = "-";

// What happens when a file of that name exists.
enum class Existing {
    Keep,     // the command fails
    Replace,  // the new file, synced to the disk, replaces it and gets the same permissions
};

// Writes a file completely or not at all. The bytes go to a temporary file in the same folder
// (".zelcam-" and two numbers, created exclusively), which is renamed when it is complete. After a
// failure or an interrupt the former file is still there. All operations throw Failure (FileFailed)
// with the name and the reason.
class OutputFile {
  public:
    // Fails when the name belongs to something other than a regular file, to a write-protected file
    // or to a dangling link, and with Existing::Keep to anything at all. A link stays: the file
    // that it points to is replaced.
    OutputFile(const std::string& file, Existing existing);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(const void* data, size_t size);

    // Renames the file. This is the last operation.
    void TakePlace();

    // For a file that others read while it grows: renames it now. Write may still be called, until
    // Finish.
    void TakePlaceEarly();
    void Finish();

  private:
    [[noreturn]] void Fail(int error) const;
    void Create();
    void Close();
    void Settle();
    void Rename();

    std::string file_;    // the name that the user gave
    std::string target_;  // the same with links resolved
    Existing existing_;
    std::string temporary_;  // empty after it was renamed
    int descriptor_ = -1;
    RemovedWhenInterrupted removed_;
};

// Throws Failure (FileFailed) when the name is taken.
void RequireNew(const std::string& file);

// Throws Failure (FileFailed) when the folder of the file does not exist.
void RequireFolder(const std::string& file);

// Writes a whole file through OutputFile. Throws Failure (FileFailed).
void WriteFile(const std::string& file, const std::string& text,
               Existing existing = Existing::Replace);

// Throws Failure (FileFailed) when standard output does not take everything.
void WriteToStandardOutput(const void* data, size_t size);

}  // namespace ZelTool
