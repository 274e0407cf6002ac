#include "tools/zelcam/console/outputfile.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "tools/zelcam/console/failure.h"

namespace ZelTool {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void ThrowUnwritable(const std::string& file, const std::string& why) {
    throw Failure(ExitCode::FileFailed, "the file " + file + " cannot be written: " + why);
}

bool IsThere(const std::string& file) {
    struct stat status {};
    return lstat(file.c_str(), &status) == 0;
}

// The path with links resolved: renaming would replace the link itself.
std::string TargetOf(const std::string& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status)) {
        if (IsThere(file)) ThrowUnwritable(file, "it is a dangling link");
        return file;
    }
    if (!fs::is_regular_file(status)) ThrowUnwritable(file, "it is not a regular file");
    if (euidaccess(file.c_str(), W_OK) != 0) ThrowUnwritable(file, std::strerror(errno));
    return fs::canonical(file, error).string();
}

std::string FolderOf(const std::string& file) {
    const fs::path folder = fs::path(file).parent_path();
    return folder.empty() ? "." : folder.string();
}

// False with errno when not everything could be written.
bool WriteAll(int descriptor, const void* data, size_t size) {
    const char* next = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write(descriptor, next, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        next += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

// Another process may have created a file of that name meanwhile. Some file systems cannot check
// that and rename in one step.
bool RenameToNew(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    if (!IsThere(to)) return std::rename(from.c_str(), to.c_str()) == 0;
    errno = EEXIST;
    return false;
}

// Makes the new name survive a power failure. Some file systems cannot sync a folder; the file is
// complete anyway.
void SyncFolder(const std::string& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    (void)fsync(descriptor);
    close(descriptor);
}

}  // namespace

void RequireNew(const std::string& file) {
    if (IsThere(file)) ThrowUnwritable(file, "it already exists; --overwrite replaces it");
}

void RequireFolder(const std::string& file) {
    const std::string folder = FolderOf(file);
    if (!fs::is_directory(folder)) {
        ThrowUnwritable(file, "there is no folder \"" + folder + "\"");
    }
}

OutputFile::OutputFile(const std::string& file, Existing existing)
    : file_(file), existing_(existing) {
    if (existing == Existing::Keep) RequireNew(file);
    target_ = TargetOf(file);
    Create();
    removed_.Watch(temporary_);
}

OutputFile::~OutputFile() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void OutputFile::Fail(int error) const {
    if (error == EEXIST) RequireNew(file_);
    ThrowUnwritable(file_, std::strerror(error));
}

// A name that exists belongs to another program, or was left by a process with the same number.
void OutputFile::Create() {
    constexpr int kTries = 1000;
    static std::atomic<unsigned> count{0};
    const std::string begin = FolderOf(target_) + "/.zelcam-" + std::to_string(getpid()) + "-";
    for (int i = 0; i < kTries && descriptor_ < 0; ++i) {
        const std::string name = begin + std::to_string(++count);
        descriptor_ =
            open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (descriptor_ >= 0) temporary_ = name;
        if (descriptor_ < 0 && errno != EEXIST) break;
    }
    if (descriptor_ < 0) ThrowUnwritable(file_, std::strerror(errno));
}

void OutputFile::Write(const void* data, size_t size) {
    if (!WriteAll(descriptor_, data, size)) Fail(errno);
}

// A new file replaces nothing that a power failure could destroy, so it is not synced: waiting for
// the disk would slow down every picture.
void OutputFile::Settle() {
    if (existing_ == Existing::Keep) return;
    struct stat former {};
    constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;
    const bool isThere = stat(target_.c_str(), &former) == 0;
    if (isThere && fchmod(descriptor_, former.st_mode & kPermissions) != 0) Fail(errno);
    if (fsync(descriptor_) != 0) Fail(errno);
}

// Some file systems report a failed write only here.
void OutputFile::Close() {
    if (close(std::exchange(descriptor_, -1)) != 0) Fail(errno);
}

void OutputFile::Rename() {
    const bool isRenamed = existing_ == Existing::Keep
                               ? RenameToNew(temporary_, target_)
                               : std::rename(temporary_.c_str(), target_.c_str()) == 0;
    if (!isRenamed) Fail(errno);
    temporary_.clear();
    removed_.Forget();
    if (existing_ == Existing::Replace) SyncFolder(FolderOf(target_));
}

void OutputFile::TakePlace() {
    Finish();
    Rename();
}

void OutputFile::TakePlaceEarly() {
    Settle();
    Rename();
}

void OutputFile::Finish() {
    Settle();
    Close();
}

void WriteFile(const std::string& file, const std::string& text, Existing existing) {
    OutputFile output(file, existing);
    output.Write(text.data(), text.size());
    output.TakePlace();
}

void WriteToStandardOutput(const void* data, size_t size) {
    if (!WriteAll(STDOUT_FILENO, data, size)) {
        throw Failure(ExitCode::FileFailed,
                      std::string("standard output cannot be written: ") + std::strerror(errno));
    }
}

}  // namespace ZelTool
