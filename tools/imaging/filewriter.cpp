#include "tools/imaging/filewriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/imaging/pixelformat.h"

namespace Imaging {
namespace {

[[noreturn]] void ThrowErrno(const std::string& path, int code) {
    throw Error("cannot write " + path + ": " + std::strerror(code));
}

// Returns 0 or the errno of what failed.
int WriteAll(int file, const void* data, size_t size) {
    const char* next = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write(file, next, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        next += written;
        size -= static_cast<size_t>(written);
    }
    return 0;
}

int WriteNewFile(const std::string& path, const void* data, size_t size) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0) return errno;
    const int failed = WriteAll(file, data, size);
    const int closed = close(file) == 0 ? 0 : errno;
    return failed != 0 ? failed : closed;
}

// A rename onto a device would replace the device.
void RefuseWhatIsNoFile(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw Error("cannot write " + path + ": it exists and is not a file");
    }
}

}  // namespace

void WriteFile(const std::string& path, const void* data, size_t size) {
    RefuseWhatIsNoFile(path);
    const std::string temporary = path + ".part" + std::to_string(getpid());
    int failed = WriteNewFile(temporary, data, size);
    if (failed == 0 && std::rename(temporary.c_str(), path.c_str()) != 0) failed = errno;
    if (failed == 0) return;
    unlink(temporary.c_str());
    ThrowErrno(path, failed);
}

}  // namespace Imaging
