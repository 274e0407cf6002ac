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

// A file that takes the place of `file` as a whole, or not at all. Failure (FileFailed) when it
// cannot, also when that is no file, may not be written, or is a link that leads nowhere.
class Replacement {
  public:
    explicit Replacement(const std::string& file);
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    // Where to write it. There is no file of that name at first.
    const std::string& Name() const { return name_; }

    // It keeps the permissions of the former file.
    void TakePlace() const;

  private:
    std::string target_;
    std::string folder_;
    std::string name_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_TEXTFILE_H
