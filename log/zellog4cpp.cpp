#include "log/zellog4cpp.h"

#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <mutex>
#include <syslog.h>

#include <log4cpp/Appender.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Configurator.hh>

#include "log/configuredappenders.h"
#include "log/executabledirectory.h"

namespace {

// Doubles the buffer until the text fits. The limit is necessary because the printers return a
// negative number both if a wide buffer is too small and if an argument cannot be converted at all.
template <typename Char>
std::basic_string<Char> FormatGrowing(int (*print)(Char*, size_t, const Char*, va_list),
                                      const Char* format, va_list args) {
    constexpr size_t kFirstSize = 512;
    constexpr size_t kLimit = size_t{1} << 24;
    std::basic_string<Char> text;
    for (size_t size = kFirstSize; size <= kLimit; size *= 2) {
        text.resize(size);
        va_list copy;
        va_copy(copy, args);
        const int length = print(text.data(), size, format, copy);
        va_end(copy);
        if (length >= 0 && static_cast<size_t>(length) < size) {
            text.resize(static_cast<size_t>(length));
            return text;
        }
    }
    return {};
}

log4cpp::Category& CategoryOf(const char* name) {
    return log4cpp::Category::getInstance(name);
}

constexpr const char* kMessageWithCode = "%s, code=%lu";

}  // namespace

void ZelLog4Cpp_configure(const char* propertyFile, const char* /*categoryName*/) {
    static const log4cpp::Appender::AppenderMapStorageInitializer kAppenderRegistry;
    static ConfiguredAppenders appenders;
    static std::mutex mutex;  // guards appenders
    const std::lock_guard<std::mutex> lock(mutex);

    const std::string path = ExecutableDirectory() + "/" + propertyFile;
    syslog(LOG_WARNING, "ZelLog4Cpp: trying to load %s\n", path.c_str());
    try {
        appenders.Configure(path);
        syslog(LOG_WARNING, "ZelLog4Cpp: PropertyConfigurator::configure succeeded!\n");
    } catch (const log4cpp::ConfigureFailure&) {
        syslog(LOG_WARNING,
               "ZelLog4Cpp: PropertyConfigurator::configure failed, logging is disabled!");
    }
}

void ZelLog4Cpp_Debug(const char* category, unsigned long code, const char* message) noexcept {
    CategoryOf(category).debug(kMessageWithCode, message, code);
}

void ZelLog4Cpp_Info(const char* category, unsigned long code, const char* message) noexcept {
    CategoryOf(category).info(kMessageWithCode, message, code);
}

void ZelLog4Cpp_Warning(const char* category, unsigned long code, const char* message) noexcept {
    CategoryOf(category).warn(kMessageWithCode, message, code);
}

void ZelLog4Cpp_Error(const char* category, unsigned long code, const char* message) noexcept {
    CategoryOf(category).error(kMessageWithCode, message, code);
}

void ZelLog4Cpp_Fatal(const char* category, unsigned long code, const char* message) noexcept {
    CategoryOf(category).fatal(kMessageWithCode, message, code);
}

void ZelLog4Cpp_Notice(const char* category, const char* message) noexcept {
    CategoryOf(category).notice("%s", message);
}

void ZelLog4Cpp_DebugText(const char* category, const char* message) noexcept {
    CategoryOf(category).debug("%s", message);
}

void ZelLog4Cpp_ErrorText(const char* category, const char* message) noexcept {
    CategoryOf(category).error("%s", message);
}

std::string help_str(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = FormatGrowing<char>(vsnprintf, format, args);
    va_end(args);
    return text;
}

std::wstring help_str(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring text = FormatGrowing<wchar_t>(vswprintf, format, args);
    va_end(args);
    return text;
}
