// Texts of URLs and lists, and paths of files.
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <glob.h>
#include <memory>
#include <sys/stat.h>

#include <Base/GCUtilities.h>

namespace GENICAM_NAMESPACE {

namespace {

const char kUnreserved[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";

// -1 if the character is not a hexadecimal digit; independent of the locale.
int DigitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool IsDirectory(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

gcstring UrlEncode(const gcstring& Input) {
    static const char kDigits[] = "0123456789ABCDEF";
    gcstring result;
    for (size_t i = 0; i < Input.length(); ++i) {
        const char c = Input.c_str()[i];
        const unsigned byte = static_cast<unsigned char>(c);
        if (c != '\0' && std::strchr(kUnreserved, c)) {
            result += c;
        } else {
            result += '%';
            result += kDigits[byte >> 4];
            result += kDigits[byte & 0xF];
        }
    }
    return result;
}

gcstring UrlDecode(const gcstring& Input) {
    const char* text = Input.c_str();  // the NUL at the end is not a digit
    gcstring result;
    for (size_t i = 0; i < Input.length(); ++i) {
        const int high = text[i] == '%' ? DigitOf(text[i + 1]) : -1;
        const int low = high >= 0 ? DigitOf(text[i + 2]) : -1;
        if (low >= 0) {
            result += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

void Tokenize(const gcstring& str, gcstring_vector& tokens, const gcstring& delimiters) {
    size_t begin = str.find_first_not_of(delimiters);
    while (begin != GCSTRING_NPOS) {
        size_t end = str.find_first_of(delimiters, begin);
        if (end == GCSTRING_NPOS) end = str.length();
        tokens.push_back(gcstring(str.c_str() + begin, end - begin));
        begin = str.find_first_not_of(delimiters, end);
    }
}

void GetFiles(const gcstring& FileTemplate, gcstring_vector& FileNames, bool DirectoriesOnly) {
    glob_t found = {};
    const std::unique_ptr<glob_t, void (*)(glob_t*)> owner(&found, globfree);
    if (glob(FileTemplate.c_str(), 0, nullptr, &found) == GLOB_NOSPACE)
        ThrowBadAlloc(__FILE__, __LINE__);
    for (size_t i = 0; i < found.gl_pathc; ++i) {
        const char* path = found.gl_pathv[i];
        if (!DirectoriesOnly || IsDirectory(path)) FileNames.push_back(path);
    }
}

gcstring GetModulePathFromFunction(void* pFunction) {
    Dl_info module;
    if (dladdr(pFunction, &module) == 0 || !module.dli_fname)
        throw RUNTIME_EXCEPTION("No module holds the function");
    // dladdr gives the path by which the module was opened, possibly a relative one.
    const std::unique_ptr<char, void (*)(void*)> path(realpath(module.dli_fname, nullptr),
                                                      std::free);
    return path ? path.get() : module.dli_fname;
}

}  // namespace GENICAM_NAMESPACE
