#include "log/executabledirectory.h"

#include <unistd.h>

std::string ExecutableDirectory() {
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const std::string executable(path, length > 0 ? static_cast<size_t>(length) : 0);
    return executable.substr(0, executable.rfind('/'));
}
