// Environment variables, and the folders and files named by them.
#include <cstdlib>
#include <mutex>
#include <string>

#include <Base/GCUtilities.h>

namespace GENICAM_NAMESPACE {

namespace {

// A path that the program may set in place of a variable.
class Path {
  public:
    explicit Path(const char* variable) : variable_(variable) {}

    gcstring Get() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return path_.empty() ? GetValueOfEnvironmentVariable(variable_) : path_;
    }

    void Set(const gcstring& path) {
        const std::lock_guard<std::mutex> lock(mutex_);
        path_ = path;
    }

  private:
    mutable std::mutex mutex_;
    const char* variable_;
    gcstring path_;
};

Path& CacheFolder() {
    static Path path(GENICAM_CACHE_VERSION);
    return path;
}

Path& LogConfig() {
    static Path path(GENICAM_LOG_CONFIG_VERSION);
    return path;
}

Path& ProtocolFolder() {
    static Path path(GENICAM_CLPROTOCOL);
    return path;
}

std::string WithVariables(const std::string& text) {
    std::string result;
    size_t done = 0;
    for (size_t begin; (begin = text.find("$(", done)) != std::string::npos;) {
        const size_t end = text.find(')', begin);
        if (end == std::string::npos) break;
        const std::string name = text.substr(begin + 2, end - begin - 2);
        const char* value = std::getenv(name.c_str());
        if (!value)
            throw RUNTIME_EXCEPTION("Environment variable '%s' does not exist", name.c_str());
        result.append(text, done, begin - done).append(value);
        done = end + 1;
    }
    return result.append(text, done, std::string::npos);
}

std::string WithCodedBlanks(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == ' ')
            result += "%20";
        else
            result += c;
    }
    return result;
}

}  // namespace

bool DoesEnvironmentVariableExist(const gcstring& VariableName) {
    return std::getenv(VariableName.c_str()) != nullptr;
}

gcstring GetValueOfEnvironmentVariable(const gcstring& VariableName) {
    return std::getenv(VariableName.c_str());
}

bool GetValueOfEnvironmentVariable(const gcstring& VariableName, gcstring& VariableContent) {
    const char* value = std::getenv(VariableName.c_str());
    if (value) VariableContent = value;
    return value != nullptr;
}

void ReplaceEnvironmentVariables(gcstring& Buffer, bool ReplaceBlankBy20) {
    std::string text = WithVariables(std::string(Buffer.c_str(), Buffer.length()));
    if (ReplaceBlankBy20) text = WithCodedBlanks(text);
    Buffer.assign(text.data(), text.size());
}

gcstring GetGenICamCacheFolder() {
    return CacheFolder().Get();
}

gcstring GetGenICamLogConfig() {
    return LogConfig().Get();
}

gcstring GetGenICamCLProtocolFolder() {
    return ProtocolFolder().Get();
}

void SetGenICamCacheFolder(const gcstring& path) {
    CacheFolder().Set(path);
}

void SetGenICamLogConfig(const gcstring& path) {
    LogConfig().Set(path);
}

void SetGenICamCLProtocolFolder(const gcstring& path) {
    ProtocolFolder().Set(path);
}

}  // namespace GENICAM_NAMESPACE
