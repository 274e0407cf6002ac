// Logging front end over log4cpp: configuration from a property file beside the executable, one
// message at a time to a named category.
#pragma once

#include <string>

// Configures log4cpp from `propertyFile` in the directory of the executable. Progress goes to the
// system log, because log4cpp has no appenders yet. A missing or broken file is not a failure; the
// library then has no configured appenders. Appenders from the file of an earlier call are deleted
// first; appenders of the application stay. The category name is not used.
void ZelLog4Cpp_configure(const char* propertyFile, const char* categoryName);

// Log "<message>, code=<code>" to the category, which is created on first use.
void ZelLog4Cpp_Debug(const char* category, unsigned long code, const char* message) noexcept;
void ZelLog4Cpp_Info(const char* category, unsigned long code, const char* message) noexcept;
void ZelLog4Cpp_Warning(const char* category, unsigned long code, const char* message) noexcept;
void ZelLog4Cpp_Error(const char* category, unsigned long code, const char* message) noexcept;
void ZelLog4Cpp_Fatal(const char* category, unsigned long code, const char* message) noexcept;

// Log only the message, at notice, debug and error priority.
void ZelLog4Cpp_Notice(const char* category, const char* message) noexcept;
void ZelLog4Cpp_DebugText(const char* category, const char* message) noexcept;
void ZelLog4Cpp_ErrorText(const char* category, const char* message) noexcept;

// printf-style formatting into a string of the necessary length. Empty if the arguments cannot be
// formatted.
std::string help_str(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::wstring help_str(const wchar_t* format, ...);
