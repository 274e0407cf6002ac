#include "ZelCameraApi/base/fixenvironment.h"

#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "log/executabledirectory.h"
#include "log/zellog4cpp.h"

namespace ZelCameraApi::Internal {

// Its address is in this library, so the loader can find the library's file by it.
const char __fix_env_sym__ = 0;

namespace {

constexpr const char* kCategory = "K4T_GEN";
constexpr const char* kRoot = "GENICAM_ROOT";
constexpr const char* kLogConfig = "GENICAM_LOG_CONFIG_V3_0";
constexpr const char* kCache = "GENICAM_CACHE_V3_0";
constexpr mode_t kFolderMode = 0775;

template <typename... Arguments>
void LogDebug(const char* format, Arguments... arguments) {
    const std::string message = "Environment::Environment: " + help_str(format, arguments...);
    ZelLog4Cpp_DebugText(kCategory, message.c_str());
}

std::string TextOf(const char* text) {
    return text != nullptr ? text : "";
}

// `label` is the name of the variable in the log.
std::string Save(const char* variable, const char* label) {
    const char* const value = std::getenv(variable);
    if (value != nullptr) LogDebug("OLD %s = %s", label, value);
    return TextOf(value);
}

void Set(const char* variable, const char* label, const std::string& value) {
    const int code = setenv(variable, value.c_str(), 1);
    LogDebug("%s = %s, code = %d", label, value.c_str(), code);
}

void Restore(const char* variable, const std::string& value) {
    if (value.empty()) {
        unsetenv(variable);
    } else {
        setenv(variable, value.c_str(), 1);
    }
}

std::string LibraryDirectory(const std::string& executableDirectory) {
    Dl_info info{};
    if (dladdr(&__fix_env_sym__, &info) == 0 || info.dli_fname == nullptr) {
        return LibraryDirectoryOf(executableDirectory);
    }
    const std::string file = info.dli_fname;
    const std::string directory = file.substr(0, file.rfind('/'));
    return directory.empty() ? LibraryDirectoryOf(executableDirectory) : directory;
}

std::string HomeDirectory() {
    if (const char* const home = std::getenv("HOME")) return home;
    const passwd* const user = getpwuid(getuid());
    return user != nullptr ? TextOf(user->pw_dir) : std::string();
}

void CreateDirectory(const std::string& path) {
    const int code = mkdir(path.c_str(), kFolderMode);
    const int error = errno;
    LogDebug("CREATE DIR = %s, mode = %o, code = %d", path.c_str(), kFolderMode, code);
    if (code == 0) return;
    const std::string message = help_str("Environment::Environment: CREATE DIR: errno = %d", error);
    ZelLog4Cpp_ErrorText(kCategory, message.c_str());
}

std::mutex& OneAtATime() {
    static std::mutex mutex;
    return mutex;
}

bool IsDirectory(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The user's cache folder; empty if there is none. Without a home directory no folder is made,
// because it would be in the root of the file system.
std::string UserCacheDirectory() {
    std::string path = HomeDirectory();
    if (path.empty()) return {};
    for (const char* const part : {"/.config", "/Zelcor", "/GENICAM_CACHE_V3_0"}) {
        path += part;
        CreateDirectory(path);
    }
    return IsDirectory(path) ? path : std::string();
}

std::string CacheDirectory(const std::string& executableDirectory) {
    std::string path = UserCacheDirectory();
    if (!path.empty()) return path;
    // The name is appended to the folder of the program without a slash, and that folder is
    // created: users rely on this place.
    mkdir(executableDirectory.c_str(), kFolderMode);
    return executableDirectory + kCache;
}

}  // namespace

std::string GetParentDirectory(const std::string& path) {
    const size_t last = path.find_last_not_of('/');
    const size_t slash = last != std::string::npos ? path.rfind('/', last) : last;
    return path.substr(0, slash);
}

std::string LibraryDirectoryOf(const std::string& executableDirectory) {
    const std::string grandparent = GetParentDirectory(GetParentDirectory(executableDirectory));
    std::string rest = executableDirectory.substr(grandparent.size());
    const size_t bin = rest.find("bin");
    if (bin != std::string::npos) rest.replace(bin, 3, "lib");
    return grandparent + rest;
}

Environment::Environment() : lock_(OneAtATime()) {
    ZelLog4Cpp_configure("camerasdklog.property", kCategory);
    oldRoot_ = Save(kRoot, "GENICAM_ROOT");
    oldLogConfig_ = Save(kLogConfig, "GENICAM_LOG_CONFIG_VERSION");
    oldCache_ = Save(kCache, "GENICAM_CACHE_VERSION");

    const std::string executableDirectory = ExecutableDirectory();
    LogDebug("CURR_DIR %s", executableDirectory.c_str());
    const std::string root = LibraryDirectory(executableDirectory) + "/genicam";
    LogDebug("ROOT_DIR %s", root.c_str());
    Set(kRoot, "GENICAM_ROOT", root);
    Set(kLogConfig, "GENICAM_LOG_CONFIG_VERSION",
        root + "/log/config-unix/DefaultLogging.properties");
    Set(kCache, "GENICAM_CACHE_VERSION", CacheDirectory(executableDirectory));
}

Environment::~Environment() {
    Restore(kRoot, oldRoot_);
    Restore(kLogConfig, oldLogConfig_);
    Restore(kCache, oldCache_);
}

std::unique_ptr<Environment> FixEnvironment() {
    return std::make_unique<Environment>();
}

}  // namespace ZelCameraApi::Internal
