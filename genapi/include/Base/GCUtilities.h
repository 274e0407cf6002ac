// Casts that check, environment variables, coding of URLs, files and folders.
#ifndef GCBASE_GCUTILITIES_H
#define GCBASE_GCUTILITIES_H

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <Base/GCTypes.h>

namespace GENICAM_NAMESPACE {

// Converts a number to another integer type. RuntimeException if it does not fit.
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

// Reading environment variables is thread-safe as long as no thread changes the environment.

GCBASE_RTTI_CLASS_API bool DoesEnvironmentVariableExist(const gcstring& VariableName);
// Empty if there is no such variable.
GCBASE_RTTI_CLASS_API gcstring GetValueOfEnvironmentVariable(const gcstring& VariableName);
// If there is no such variable, returns false and leaves VariableContent unchanged.
GCBASE_RTTI_CLASS_API bool GetValueOfEnvironmentVariable(const gcstring& VariableName,
                                                         gcstring& VariableContent);

// Replaces each "$(NAME)" by the variable's value; values are not searched again. ReplaceBlankBy20
// turns the blanks of the result into "%20". RuntimeException if a variable does not exist; Buffer
// then stays unchanged.
GCBASE_RTTI_CLASS_API void ReplaceEnvironmentVariables(gcstring& Buffer,
                                                       bool ReplaceBlankBy20 = false);

// Writes all bytes except letters, digits and "-._~" as "%XX". Reentrant.
GCBASE_RTTI_CLASS_API gcstring UrlEncode(const gcstring& Input);
// The reverse; a '%' without two hexadecimal digits after it stays. Reentrant.
GCBASE_RTTI_CLASS_API gcstring UrlDecode(const gcstring& Input);

// Folders and files set by the program, or else by the environment variables
// GENICAM_CACHE_V<version>, GENICAM_LOG_CONFIG_V<version> and GENICAM_CLPROTOCOL; empty if neither
// sets them. Setting an empty path makes the variable count again. Thread-safe.
GCBASE_RTTI_CLASS_API gcstring GetGenICamCacheFolder();
GCBASE_RTTI_CLASS_API gcstring GetGenICamLogConfig();
GCBASE_RTTI_CLASS_API gcstring GetGenICamCLProtocolFolder();
GCBASE_RTTI_CLASS_API void SetGenICamCacheFolder(const gcstring& path);
GCBASE_RTTI_CLASS_API void SetGenICamLogConfig(const gcstring& path);
GCBASE_RTTI_CLASS_API void SetGenICamCLProtocolFolder(const gcstring& path);

// Appends the non-empty parts of a text between delimiters; each character of the list is a
// delimiter. Reentrant.
GCBASE_RTTI_CLASS_API void Tokenize(const gcstring& str, gcstring_vector& tokens,
                                    const gcstring& delimiters = " ");

// Appends the sorted paths that match a pattern with '*', '?' and '[]'. If the pattern includes a
// folder, the paths do, too. Thread-safe.
GCBASE_RTTI_CLASS_API void GetFiles(const gcstring& FileTemplate, gcstring_vector& FileNames,
                                    bool DirectoriesOnly = false);

// The path of the program or library that holds a function. RuntimeException if none does.
// Thread-safe.
GCBASE_RTTI_CLASS_API gcstring GetModulePathFromFunction(void* pFunction);

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCUTILITIES_H
