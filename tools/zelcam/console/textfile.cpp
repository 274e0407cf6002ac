#include "tools/zelcam/console/textfile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/zelcam/console/failure.h"

namespace ZelTool {

namespace {

[[noreturn]] void ThrowUnreadable(const std::string& what, const std::string& why) {
    throw Failure(ExitCode::FileFailed, what + " cannot be read: " + why);
}

}  // namespace

// Opening anything but a regular file could block, or affect a device.
std::string ReadFile(const std::string& file, uint64_t longest) {
    const std::string what = "the file " + file;
    const int descriptor = open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    const std::unique_ptr<FILE, int (*)(FILE*)> opened(
        descriptor >= 0 ? fdopen(descriptor, "rb") : nullptr, fclose);
    struct stat status {};
    if (opened == nullptr || fstat(descriptor, &status) != 0) {
        ThrowUnreadable(what, std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) ThrowUnreadable(what, "it is not a regular file");
    const auto size = static_cast<uint64_t>(status.st_size);
    if (size > longest) ThrowUnreadable(what, "it is too large");
    std::string bytes(size, '\0');
    bytes.resize(fread(bytes.data(), 1, bytes.size(), opened.get()));
    if (ferror(opened.get()) != 0) ThrowUnreadable(what, std::strerror(errno));
    return bytes;
}

std::string ReadStandardInput(uint64_t longest) {
    constexpr const char* kWhat = "standard input";
    std::string bytes;
    std::array<char, 65536> piece{};
    for (;;) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = poll(&input, 1, static_cast<int>(kSliceMs));
        EndIfInterrupted();
        if (ready <= 0) continue;
        const ssize_t size = read(STDIN_FILENO, piece.data(), piece.size());
        if (size < 0) ThrowUnreadable(kWhat, std::strerror(errno));
        if (size == 0) return bytes;
        bytes.append(piece.data(), static_cast<size_t>(size));
        if (bytes.size() > longest) ThrowUnreadable(kWhat, "it is too large");
    }
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

}  // namespace ZelTool
