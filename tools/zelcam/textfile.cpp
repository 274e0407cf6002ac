#include "tools/zelcam/textfile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/zelcam/failure.h"

namespace {

[[noreturn]] void ThrowUnreadable(const std::string& file, const std::string& why) {
    throw Failure(ExitCode::FileFailed, "the file " + file + " cannot be read: " + why);
}

}  // namespace

// Opening anything but a regular file could block, or have an effect on a device.
std::string ReadFile(const std::string& file, uint64_t longest) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    const std::unique_ptr<FILE, int (*)(FILE*)> opened(
        descriptor >= 0 ? fdopen(descriptor, "rb") : nullptr, fclose);
    struct stat status {};
    if (opened == nullptr || fstat(descriptor, &status) != 0) {
        ThrowUnreadable(file, std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) ThrowUnreadable(file, "it is no file");
    const auto size = static_cast<uint64_t>(status.st_size);
    if (size > longest) ThrowUnreadable(file, "it is too large");
    std::string bytes(size, '\0');
    bytes.resize(fread(bytes.data(), 1, bytes.size(), opened.get()));
    if (ferror(opened.get()) != 0) ThrowUnreadable(file, std::strerror(errno));
    return bytes;
}

TemporaryFile::TemporaryFile(const std::string& file) : name_(file + ".XXXXXX") {
    const int descriptor = mkstemp(name_.data());
    if (descriptor < 0) {
        throw Failure(ExitCode::FileFailed,
                      "the file " + file + " cannot be written: " + std::strerror(errno));
    }
    close(descriptor);
    removed_.Watch(name_);
}

TemporaryFile::~TemporaryFile() {
    unlink(name_.c_str());
}
