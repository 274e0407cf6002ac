// Files that the program writes.
#ifndef ZELCAM_TOOLS_ZELCAM_OUTPUTFILE_H
#define ZELCAM_TOOLS_ZELCAM_OUTPUTFILE_H

#include <cstddef>
#include <string>

#include "tools/zelcam/interrupt.h"

// The name that means standard output, or standard input where a file is read.
constexpr const char* standardStream = "-";

// What happens to a file that already has the name.
enum class Existing {
    Keep,     // it is a failure
    Replace,  // by a file that is on the disk by then, with the same permissions
};

// A file that is there as a whole or not at all: it is written under a name of its own in the same
// folder, ".zelcam-" and two numbers, which nobody else can have made, and then takes its name. Who
// is interrupted before, or fails, leaves what was there. All operations throw Failure (FileFailed)
// with the name and the reason.
class OutputFile {
  public:
    // Failure for what is no regular file, may not be written, or is a link that leads nowhere, and
    // with Existing::Keep for everything that exists. A link stays; the file it leads to is
    // replaced.
    OutputFile(const std::string& file, Existing existing);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(const void* data, size_t size);

    // The last operation.
    void TakePlace();

    // For a file that is read while it grows: from now on it has its name, and Write goes on until
    // Finish.
    void TakePlaceEarly();
    void Finish();

  private:
    [[noreturn]] void Fail(int error) const;
    void Create();
    void Close();
    void Settle();
    void Rename();

    std::string file_;  // as the user calls it
    std::string target_;
    Existing existing_;
    std::string temporary_;  // empty once it has taken its name
    int descriptor_ = -1;
    RemovedWhenInterrupted removed_;
};

// Failure (FileFailed) when something has that name already.
void RequireNew(const std::string& file);

// Failure (FileFailed) when the folder that the file is to be in is not there.
void RequireFolder(const std::string& file);

// Failure (FileFailed). Both in one piece.
void WriteFile(const std::string& file, const std::string& text,
               Existing existing = Existing::Replace);

// Failure (FileFailed) when not everything can be written to standard output.
void WriteToStandardOutput(const void* data, size_t size);

#endif  // ZELCAM_TOOLS_ZELCAM_OUTPUTFILE_H
