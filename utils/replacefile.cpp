#include "utils/replacefile.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace ZelUtil {

namespace {

constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t kNewFile = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

class OpenFile {
  public:
    explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
    ~OpenFile() { Close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }
    bool SetPermissions(mode_t mode) const { return fchmod(descriptor_, mode & kPermissions) == 0; }
    bool Sync() const { return fsync(descriptor_) == 0; }

    bool Write(std::string_view content) const {
        while (!content.empty()) {
            const ssize_t count = write(descriptor_, content.data(), content.size());
            if (count > 0) {
                content.remove_prefix(static_cast<size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                return false;
            }
        }
        return true;
    }

    // Some file systems report failed writes only here.
    bool Close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor >= 0 && close(descriptor) == 0;
    }

  private:
    int descriptor_;
};

// A temporary file in a folder. Its destructor removes it unless it was renamed.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& folder) : file_(Create(folder)) {}
    ~TemporaryFile() {
        if (!name_.empty()) unlink(name_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    OpenFile& File() { return file_; }

    bool Rename(const std::string& target) {
        if (rename(name_.c_str(), target.c_str()) != 0) return false;
        name_.clear();
        return true;
    }

  private:
    // An existing file belongs to another process, or an earlier process with the same number left
    // it.
    int Create(const std::string& folder) {
        constexpr int kTries = 1000;
        static std::atomic<unsigned> count{0};
        for (int i = 0; i < kTries; ++i) {
            const std::string name =
                folder + "/.zelcam-" + std::to_string(getpid()) + "-" + std::to_string(++count);
            const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile);
            if (file >= 0) name_ = name;
            if (file >= 0 || errno != EEXIST) return file;
        }
        return -1;
    }

    std::string name_;
    OpenFile file_;
};

std::string FolderOf(const std::string& file) {
    const size_t slash = file.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : file.substr(0, slash);
}

// `former` is null if there is no such file yet.
bool Replace(const std::string& target, const struct stat* former, std::string_view content) {
    const std::string folder = FolderOf(target);
    TemporaryFile temporary(folder);
    OpenFile& file = temporary.File();
    if (!file.IsOpen() || !file.Write(content)) return false;
    if (former != nullptr && !file.SetPermissions(former->st_mode)) return false;
    if (!file.Sync() || !file.Close() || !temporary.Rename(target)) return false;
    // The file exists. If the folder cannot be synced, nothing more can be done.
    const OpenFile opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.IsOpen()) (void)opened.Sync();
    return true;
}

bool ReplaceFormer(const char* fileName, const struct stat& former, std::string_view content) {
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(fileName, nullptr),
                                                             std::free);
    if (target == nullptr) return false;
    if (faccessat(AT_FDCWD, target.get(), W_OK, AT_EACCESS) != 0) return false;
    return Replace(target.get(), &former, content);
}

bool WriteInto(const char* fileName, std::string_view content) {
    OpenFile file(open(fileName, O_WRONLY | O_CLOEXEC | O_NOCTTY));
    return file.IsOpen() && file.Write(content) && file.Close();
}

}  // namespace

bool ReplaceFile(const char* fileName, std::string_view content) {
    errno = 0;
    if (fileName == nullptr) return false;
    struct stat former = {};
    if (stat(fileName, &former) == 0) {
        return S_ISREG(former.st_mode) ? ReplaceFormer(fileName, former, content)
                                       : WriteInto(fileName, content);
    }
    const bool isNew = errno == ENOENT && lstat(fileName, &former) != 0;
    return isNew && Replace(fileName, nullptr, content);
}

}  // namespace ZelUtil
