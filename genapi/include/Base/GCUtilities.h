// Casts that check, environment variables, coding of URLs, files and folders.
#ifndef GCBASE_GCUTILITIES_H
#define GCBASE_GCUTILITIES_H

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <Base/GCTypes.h>

namespace GENICAM_NAMESPACE {

// The same number in another integer type. RuntimeException if that type cannot hold it.
template <typename Td, typename Ts>
inline Td INTEGRAL_CAST2(Ts s) {
    const Td d = static_cast<Td>(s);
    if (static_cast<Ts>(d) != s || (d < Td()) != (s < Ts()))
        throw RUNTIME_EXCEPTION("INTEGRAL_CAST failed");
    return d;
}

template <typename T>
inline T INTEGRAL_CAST(int64_t ll) {
    return INTEGRAL_CAST2<T, int64_t>(ll);
}

// What reads environment variables is thread-safe as long as no thread changes the environment.

GCBASE_RTTI_CLASS_API bool DoesEnvironmentVariableExist(const gcstring& VariableName);
// Empty if there is no such variable.
GCBASE_RTTI_CLASS_API gcstring GetValueOfEnvironmentVariable(const gcstring& VariableName);
// False if there is no such variable, and VariableContent stays as it is.
GCBASE_RTTI_CLASS_API bool GetValueOfEnvironmentVariable(const gcstring& VariableName,
                                                         gcstring& VariableContent);

// Puts values for each "$(NAME)"; values are not searched again. On request blanks of the result
// become "%20". RuntimeException if a variable does not exist, and Buffer stays as it is.
GCBASE_RTTI_CLASS_API void ReplaceEnvironmentVariables(gcstring& Buffer,
                                                       bool ReplaceBlankBy20 = false);

// Writes all bytes but letters, digits and "-._~" as "%XX". Reentrant.
GCBASE_RTTI_CLASS_API gcstring UrlEncode(const gcstring& Input);
// The reverse; a '%' without two hexadecimal digits stands for itself. Reentrant.
GCBASE_RTTI_CLASS_API gcstring UrlDecode(const gcstring& Input);

// Folders and files as set by the program, or else by the environment variables
// GENICAM_CACHE_V<version>, GENICAM_LOG_CONFIG_V<version> and GENICAM_CLPROTOCOL; empty if by
// neither. Setting an empty path gives way to the variable again. Thread-safe.
GCBASE_RTTI_CLASS_API gcstring GetGenICamCacheFolder();
GCBASE_RTTI_CLASS_API gcstring GetGenICamLogConfig();
GCBASE_RTTI_CLASS_API gcstring GetGenICamCLProtocolFolder();
GCBASE_RTTI_CLASS_API void SetGenICamCacheFolder(const gcstring& path);
GCBASE_RTTI_CLASS_API void SetGenICamLogConfig(const gcstring& path);
GCBASE_RTTI_CLASS_API void SetGenICamCLProtocolFolder(const gcstring& path);

// Appends the parts of a text between delimiters, each of which is one character of the list. There
// are no empty parts. Reentrant.
GCBASE_RTTI_CLASS_API void Tokenize(const gcstring& str, gcstring_vector& tokens,
                                    const gcstring& delimiters = " ");

// Appends the sorted paths of what matches a pattern with '*', '?' and '[]'; a folder in the
// pattern is part of the paths. Thread-safe.
GCBASE_RTTI_CLASS_API void GetFiles(const gcstring& FileTemplate, gcstring_vector& FileNames,
                                    bool DirectoriesOnly = false);

// The path of the program or library that holds a function. RuntimeException if none does.
// Thread-safe.
GCBASE_RTTI_CLASS_API gcstring GetModulePathFromFunction(void* pFunction);

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCUTILITIES_H
