#include "producers/simulator/config/configfile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"
#include "producers/simulator/config/configparser.h"

namespace ZelSim {

using ZelCti::Error;

namespace {

// Enough for tens of thousands of cameras.
constexpr off_t kMaxSize = off_t{16} << 20;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw Error(GenTL::GC_ERR_IO, path + ": " + reason);
}

std::string ReadFile(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    const std::unique_ptr<std::FILE, CloseFile> file(descriptor < 0 ? nullptr
                                                                    : fdopen(descriptor, "rb"));
    struct stat status {};
    if (!file || fstat(descriptor, &status) != 0) Refuse(path, std::strerror(errno));
    if (S_ISDIR(status.st_mode)) Refuse(path, "it is a folder, not a configuration");
    if (!S_ISREG(status.st_mode)) Refuse(path, "only a regular file can be a configuration");
    if (status.st_size > kMaxSize) Refuse(path, "no configuration is larger than 16 MiB");
    std::string text(static_cast<size_t>(status.st_size), '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    if (std::ferror(file.get()) != 0) Refuse(path, std::strerror(errno));
    return text;
}

// An unset variable counts as an empty one.
std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

WorldConfig LoadConfigFile(const std::string& path) {
    return ParseConfig(ReadFile(path), path);
}

WorldConfig LoadConfig() {
    const std::string path = Variable("ZELSIM_CONFIG");
    if (!path.empty()) return LoadConfigFile(path);
    const std::string asked = Variable("ZELSIM");
    if (asked == "1") return DefaultConfig();
    if (asked.empty() || asked == "0") return {};
    throw Error(
        GenTL::GC_ERR_INVALID_PARAMETER,
        "ZELSIM=\"" + asked + "\": only 1 (built-in simulated cameras) and 0 (none) are known");
}

}  // namespace ZelSim
