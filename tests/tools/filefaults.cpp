// Preloaded into a program: one of its operations on files of a folder fails. The variables:
//   FILEFAULTS_FOLDER  the folder; what lies elsewhere neither counts nor fails
//   FILEFAULTS_NUMBER  the operation that fails, from 0 on
//   FILEFAULTS_ERROR   the errno that it fails with, or 0: a write that takes only one byte
//   FILEFAULTS_REPORT  a file that gets the name of the operation that failed; none without one
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

constexpr int kMaxDescriptors = 1024;

enum Use : char { Foreign, Read, Written, Folder };

std::array<Use, kMaxDescriptors> uses{};  // of descriptors

const char* Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsWatched(const char* path) {
    static const std::string folder = Variable("FILEFAULTS_FOLDER");
    if (path == nullptr || folder.empty()) return false;
    // The programs run in the folder.
    return path[0] != '/' || std::strncmp(path, folder.c_str(), folder.size()) == 0;
}

Use UseOf(int descriptor) {
    return descriptor >= 0 && descriptor < kMaxDescriptors ? uses[static_cast<size_t>(descriptor)]
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
    static const auto open = Next<int(const char*, int, ...)>("open");
    static const auto write = Next<ssize_t(int, const void*, size_t)>("write");
    static const auto close = Next<int(int)>("close");
    const int file = open(Variable("FILEFAULTS_REPORT"), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (write(file, operation.data(), operation.size()) < 0) std::abort();
    close(file);
}

// Counts an operation; whether it is the one.
bool Meets(const char* operation, Use use = Foreign) {
    static const long long number = std::atoll(Variable("FILEFAULTS_NUMBER"));
    static long long count = 0;
    if (count++ != number) return false;
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

FILE* OpenStream(const char* name, const char* path, const char* mode) {
    const auto next = Next<FILE*(const char*, const char*)>(name);
    const int flags = std::strchr(mode, 'r') != nullptr ? O_RDONLY : O_WRONLY;
    const Use use = UseFor(path, flags);
    if (use != Foreign && Fails("fopen", use)) return nullptr;
    FILE* const file = next(path, mode);
    if (file != nullptr) SetUse(fileno(file), use);
    return file;
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

EXPORT int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return OpenAs(path, flags,
                  [&] { return Next<int(const char*, int, ...)>("open64")(path, flags, mode); });
}

EXPORT FILE* fopen(const char* path, const char* mode) {
    return OpenStream("fopen", path, mode);
}

EXPORT FILE* fopen64(const char* path, const char* mode) {
    return OpenStream("fopen64", path, mode);
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

EXPORT ssize_t writev(int file, const iovec* parts, int count) {
    if (UseOf(file) == Written && Fails("write", Written)) return -1;
    return Next<ssize_t(int, const iovec*, int)>("writev")(file, parts, count);
}

EXPORT int fsync(int file) {
    if (UseOf(file) != Foreign && Fails("fsync", UseOf(file) == Folder ? Folder : Written))
        return -1;
    return Next<int(int)>("fsync")(file);
}

// A descriptor is closed also where closing fails.
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

EXPORT int mkdir(const char* path, mode_t mode) noexcept {
    if (IsWatched(path) && Fails("mkdir")) return -1;
    return Next<int(const char*, mode_t)>("mkdir")(path, mode);
}

EXPORT int stat(const char* path, struct stat* status) noexcept {
    if (IsWatched(path) && Fails("stat")) return -1;
    return Next<int(const char*, struct stat*)>("stat")(path, status);
}

EXPORT int fstat(int file, struct stat* status) noexcept {
    if (UseOf(file) != Foreign && Fails("fstat")) return -1;
    return Next<int(int, struct stat*)>("fstat")(file, status);
}

EXPORT int fchmod(int file, mode_t mode) noexcept {
    if (UseOf(file) != Foreign && Fails("fchmod", Written)) return -1;
    return Next<int(int, mode_t)>("fchmod")(file, mode);
}
