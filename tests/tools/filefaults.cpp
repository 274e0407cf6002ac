// Preloaded into a program, this makes one of its operations on files of a folder fail. The
// variables:
//   FILEFAULTS_FOLDER  the folder; operations on other files neither count nor fail
//   FILEFAULTS_NUMBER  the operation that fails, from 0 on
//   FILEFAULTS_ERROR   the errno that it fails with, or 0: a write that takes only one byte
//   FILEFAULTS_REPORT  a file that gets the name of the operation that failed; none without one
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kMaxDescriptors = 1024;

enum Use : char { Foreign, Read, Written, Folder };

std::array<std::atomic<Use>, kMaxDescriptors> uses{};  // of descriptors

const char* Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsWatched(const char* path) {
    static const std::string kFolder = Variable("FILEFAULTS_FOLDER");
    if (path == nullptr || kFolder.empty()) return false;
    // The programs run in the folder.
    return path[0] != '/' || std::strncmp(path, kFolder.c_str(), kFolder.size()) == 0;
}

Use UseOf(int descriptor) {
    return descriptor >= 0 && descriptor < kMaxDescriptors
               ? uses[static_cast<size_t>(descriptor)].load()
               : Foreign;
}

void SetUse(int descriptor, Use use) {
    if (descriptor >= 0 && descriptor < kMaxDescriptors)
        uses[static_cast<size_t>(descriptor)] = use;
}

int Error() {
    return std::atoi(Variable("FILEFAULTS_ERROR"));
}

void Report(const std::string& operation) {
    static const auto kOpen = Next<int(const char*, int, ...)>("open");
    static const auto kWrite = Next<ssize_t(int, const void*, size_t)>("write");
    static const auto kClose = Next<int(int)>("close");
    const int file = kOpen(Variable("FILEFAULTS_REPORT"), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (kWrite(file, operation.data(), operation.size()) < 0) std::abort();
    kClose(file);
}

// Counts an operation. True if it is the one that fails.
bool Meets(const char* operation, Use use = Foreign) {
    static const long long kNumber = std::atoll(Variable("FILEFAULTS_NUMBER"));
    static std::atomic<long long> count{0};
    if (count++ != kNumber) return false;
    Report(std::string(operation) + (use == Written ? " written" : use == Folder ? " folder" : ""));
    return true;
}

bool Fails(const char* operation, Use use = Foreign) {
    if (!Meets(operation, use)) return false;
    errno = Error();
    return errno != 0;
}

Use UseFor(const char* path, int flags) {
    if (!IsWatched(path)) return Foreign;
    if ((flags & O_DIRECTORY) != 0) return Folder;
    return (flags & O_ACCMODE) == O_RDONLY ? Read : Written;
}

template <typename Open>
int OpenAs(const char* path, int flags, Open&& open) {
    const Use use = UseFor(path, flags);
    if (use != Foreign && Fails("open", use)) return -1;
    const int file = open();
    struct stat status {};
    const bool isFolder = file >= 0 && Next<int(int, struct stat*)>("fstat")(file, &status) == 0 &&
                          S_ISDIR(status.st_mode);
    SetUse(file, use != Foreign && isFolder ? Folder : use);
    return file;
}

mode_t ModeOf(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

#define EXPORT extern "C" __attribute__((visibility("default")))

EXPORT int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return OpenAs(path, flags,
                  [&] { return Next<int(const char*, int, ...)>("open")(path, flags, mode); });
}

// The program only gets a name; another operation creates the file.
EXPORT int mkstemp(char* name) {
    if (IsWatched(name) && Fails("open", Written)) return -1;
    const int file = Next<int(char*)>("mkstemp")(name);
    if (IsWatched(name)) SetUse(file, Read);
    return file;
}

// Only the C library can mark a stream as failed, so it gets a folder to read.
EXPORT size_t fread(void* data, size_t size, size_t count, FILE* file) {
    if (UseOf(fileno(file)) != Foreign && Fails("read")) {
        const int folder = Next<int(const char*, int, ...)>("open")("/", O_RDONLY | O_DIRECTORY);
        dup2(folder, fileno(file));
        Next<int(int)>("close")(folder);
    }
    return Next<size_t(void*, size_t, size_t, FILE*)>("fread")(data, size, count, file);
}

EXPORT ssize_t read(int file, void* data, size_t size) {
    if (UseOf(file) != Foreign && Fails("read")) return -1;
    return Next<ssize_t(int, void*, size_t)>("read")(file, data, size);
}

EXPORT ssize_t write(int file, const void* data, size_t size) {
    if (UseOf(file) == Written && Meets("write", Written)) {
        errno = Error();
        if (errno != 0) return -1;
        size = size > 1 ? 1 : size;
    }
    return Next<ssize_t(int, const void*, size_t)>("write")(file, data, size);
}

EXPORT int fsync(int file) {
    if (UseOf(file) != Foreign && Fails("fsync", UseOf(file) == Folder ? Folder : Written))
        return -1;
    return Next<int(int)>("fsync")(file);
}

// Closes the descriptor even if closing fails.
EXPORT int close(int file) {
    const Use use = UseOf(file);
    SetUse(file, Foreign);
    const int result = Next<int(int)>("close")(file);
    return use != Foreign && Fails("close", use) ? -1 : result;
}

EXPORT int fclose(FILE* file) {
    const Use use = UseOf(fileno(file));
    SetUse(fileno(file), Foreign);
    const int result = Next<int(FILE*)>("fclose")(file);
    return use != Foreign && Fails("close", use) ? EOF : result;
}

EXPORT int rename(const char* from, const char* to) noexcept {
    if (IsWatched(to) && Fails("rename", Written)) return -1;
    return Next<int(const char*, const char*)>("rename")(from, to);
}

EXPORT int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                     unsigned flags) noexcept {
    if (IsWatched(to) && Fails("rename", Written)) return -1;
    return Next<int(int, const char*, int, const char*, unsigned)>("renameat2")(
        fromFolder, from, toFolder, to, flags);
}

EXPORT char* realpath(const char* path, char* resolved) noexcept {
    if (IsWatched(path) && Fails("realpath")) return nullptr;
    return Next<char*(const char*, char*)>("realpath")(path, resolved);
}

EXPORT int euidaccess(const char* path, int mode) noexcept {
    if (IsWatched(path) && Fails("euidaccess")) return -1;
    return Next<int(const char*, int)>("euidaccess")(path, mode);
}

EXPORT int mkdir(const char* path, mode_t mode) noexcept {
    if (IsWatched(path) && Fails("mkdir")) return -1;
    return Next<int(const char*, mode_t)>("mkdir")(path, mode);
}

EXPORT int stat(const char* path, struct stat* status) noexcept {
    if (IsWatched(path) && Fails("stat")) return -1;
    return Next<int(const char*, struct stat*)>("stat")(path, status);
}

EXPORT int lstat(const char* path, struct stat* status) noexcept {
    if (IsWatched(path) && Fails("lstat")) return -1;
    return Next<int(const char*, struct stat*)>("lstat")(path, status);
}

EXPORT int fstat(int file, struct stat* status) noexcept {
    if (UseOf(file) != Foreign && Fails("fstat")) return -1;
    return Next<int(int, struct stat*)>("fstat")(file, status);
}

EXPORT int fchmod(int file, mode_t mode) noexcept {
    if (UseOf(file) != Foreign && Fails("fchmod", Written)) return -1;
    return Next<int(int, mode_t)>("fchmod")(file, mode);
}
