// Whole files, and files for a while.
#ifndef ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
#define ZELCAM_TOOLS_ZELCAM_TEXTFILE_H

#include <string>

// Both throw Failure (FileFailed) with the reason.
std::string ReadFile(const std::string& file);
void WriteFile(const std::string& file, const std::string& text);

// A file with a name of its own beside `file`, removed at the end unless it took that name. Failure
// (FileFailed) when it cannot be made.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& file);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Name() const { return name_; }

  private:
    std::string name_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
