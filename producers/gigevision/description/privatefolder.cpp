#include "producers/gigevision/description/privatefolder.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <random>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace ZelGev {

namespace {

// More files than one would ever have; a folder with more of them is not looked at.
constexpr size_t kMaxFolderFiles = 16384;

[[noreturn]] void ThrowErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

class File {
  public:
    explicit File(int descriptor) : descriptor_(descriptor) {
        if (descriptor < 0) ThrowErrno("open");
    }
    ~File() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int Descriptor() const { return descriptor_; }
    int Release() { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_;
};

struct stat StatusOf(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) ThrowErrno("fstat");
    return status;
}

bool IsOurs(const struct stat& status) {
    return status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// `follows` a symbolic link only if it is the user's own way to say where the caches are.
int OpenFolder(int parent, const char* name, PrivateFolder::Use use, bool follows) {
    if (use == PrivateFolder::Use::Write && mkdirat(parent, name, S_IRWXU) != 0 && errno != EEXIST)
        ThrowErrno("mkdir");
    File folder(
        openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | (follows ? 0 : O_NOFOLLOW)));
    if (!IsOurs(StatusOf(folder.Descriptor())))
        throw std::runtime_error(std::string(name) + ": others may write this folder");
    return folder.Release();
}

void WriteAll(int descriptor, const uint8_t* content, size_t size) {
    while (size != 0) {
        const ssize_t written = write(descriptor, content, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) ThrowErrno("write");
        content += written;
        size -= static_cast<size_t>(written);
    }
}

bool ReadAll(int descriptor, uint8_t* content, size_t size) {
    while (size != 0) {
        const ssize_t count = read(descriptor, content, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        content += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

struct Entry {
    std::string name;
    size_t size;
    timespec time;
};

bool IsOlder(const Entry& left, const Entry& right) {
    return std::pair(left.time.tv_sec, left.time.tv_nsec) <
           std::pair(right.time.tv_sec, right.time.tv_nsec);
}

// The regular files of a folder.
std::vector<Entry> ListFiles(int folder) {
    File copy(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, int (*)(DIR*)> list(fdopendir(copy.Descriptor()), &closedir);
    if (list == nullptr) ThrowErrno("fdopendir");
    copy.Release();  // closedir closes it
    std::vector<Entry> files;
    while (const dirent* const entry = readdir(list.get())) {
        struct stat status {};
        if (fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (!S_ISREG(status.st_mode)) continue;
        if (files.size() == kMaxFolderFiles) throw std::runtime_error("too many files");
        files.push_back({entry->d_name, static_cast<size_t>(status.st_size), status.st_mtim});
    }
    return files;
}

}  // namespace

PrivateFolder::PrivateFolder(const std::string& base, Use use) {
    const File caches(OpenFolder(AT_FDCWD, base.c_str(), use, true));
    const File ours(OpenFolder(caches.Descriptor(), "zelcam", use, false));
    descriptor_ = OpenFolder(ours.Descriptor(), "descriptions", use, false);
}

PrivateFolder::~PrivateFolder() {
    close(descriptor_);
}

bool PrivateFolder::Read(const std::string& name, uint8_t* content, size_t size) const {
    // Another kind of file could block.
    const File file(
        openat(descriptor_, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const struct stat status = StatusOf(file.Descriptor());
    if (!S_ISREG(status.st_mode) || !IsOurs(status)) return false;
    if (static_cast<size_t>(status.st_size) != size) return false;
    if (!ReadAll(file.Descriptor(), content, size)) return false;
    futimens(file.Descriptor(), nullptr);
    return true;
}

void PrivateFolder::Write(const std::string& name, const uint8_t* content, size_t size) const {
    // A crash leaves this file, which is one of those that Trim removes.
    const std::string temporary = name + "." + std::to_string(std::random_device()());
    const File file(openat(descriptor_, temporary.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                           S_IRUSR | S_IWUSR));
    try {
        WriteAll(file.Descriptor(), content, size);
        if (renameat(descriptor_, temporary.c_str(), descriptor_, name.c_str()) != 0)
            ThrowErrno("rename");
    } catch (...) {
        unlinkat(descriptor_, temporary.c_str(), 0);
        throw;
    }
}

void PrivateFolder::Trim(size_t maxSize) const {
    std::vector<Entry> files = ListFiles(descriptor_);
    std::sort(files.begin(), files.end(), IsOlder);
    size_t total = 0;
    for (const Entry& file : files)
        total += file.size;
    for (const Entry& file : files) {
        if (total <= maxSize) return;
        if (unlinkat(descriptor_, file.name.c_str(), 0) == 0) total -= file.size;
    }
}

}  // namespace ZelGev
