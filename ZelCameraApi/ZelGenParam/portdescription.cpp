#include "ZelCameraApi/ZelGenParam/portdescription.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

#include "ZelCam/Error.h"
#include "ZelCameraApi/base/gentl_error.h"
#include "gentl/portdescriptionurl.h"

namespace ZelCameraApi::Internal {

namespace {

using NodeMapOwner = std::unique_ptr<GenApi::CNodeMapRef>;
using File = std::unique_ptr<FILE, int (*)(FILE*)>;

// The device claims the length of its description. The largest descriptions need a few MiB, and the
// engine accepts no more than this.
constexpr uint64_t kMaxLength = uint64_t{32} << 20;

// Ports are read in whole registers.
constexpr size_t kRegisterSize = 4;

// The text after the last dot; empty if there is no dot.
std::string ExtensionOf(const std::string& path) {
    const size_t dot = path.rfind('.');
    return dot != std::string::npos ? ZelUrl::UpperCase(path.substr(dot + 1)) : std::string();
}

// Calls `loadXml(map)` or `loadZip(map)`, according to the extension; null for another extension.
template <typename LoadXml, typename LoadZip>
NodeMapOwner Load(const std::string& extension, const GenICam::gcstring& moduleId,
                  LoadXml&& loadXml, LoadZip&& loadZip) {
    auto map = std::make_unique<GenApi::CNodeMapRef>(moduleId);
    if (extension == "ZIP") {
        loadZip(*map);
    } else if (extension == "XML") {
        loadXml(*map);
    } else {
        return nullptr;
    }
    return map;
}

// Returns only the bytes of the range: bytes that rounding added never reach a parser.
std::string ReadRegisters(const GenTLModule<void*>& port, const ZelUrl::LocalFile& range) {
    if (range.length > kMaxLength) throw RUNTIME_EXCEPTION("Description too large");
    const auto length = static_cast<size_t>(range.length);
    size_t size = (length + kRegisterSize - 1) / kRegisterSize * kRegisterSize;
    std::string bytes(size, '\0');
    ThrowOnError(port.lib->GCReadPort(port.handle, range.address, bytes.data(), &size));
    if (size < length) throw RUNTIME_EXCEPTION("Description incomplete");
    bytes.resize(length);
    return bytes;
}

NodeMapOwner LoadRegisters(const GenTLModule<void*>& port, const std::string& body,
                           const GenICam::gcstring& moduleId) {
    const auto file = ZelUrl::ParseLocalFile(body);
    if (!file) throw RUNTIME_EXCEPTION("Invalid URL");
    const std::string bytes = ReadRegisters(port, *file);
    return Load(
        ExtensionOf(file->name), moduleId,
        // Zeros after the text fill up its last register.
        [&](GenApi::CNodeMapRef& map) { map._LoadXMLFromString(bytes.c_str()); },
        [&](GenApi::CNodeMapRef& map) { map._LoadXMLFromZIPData(bytes.data(), bytes.size()); });
}

// At most `count` characters of a text in UTF-8.
std::string FirstCharacters(const std::string& text, size_t count) {
    const auto end = std::find_if(text.begin(), text.end(), [&count](char c) {
        const bool begins = (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
        return begins && count-- == 0;
    });
    return {text.begin(), end};
}

// Opening other files than regular ones could block or affect a device.
std::string ReadRegularFile(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const File file(descriptor >= 0 ? fdopen(descriptor, "rb") : nullptr, &std::fclose);
    struct stat status {};
    if (file == nullptr || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        throw RUNTIME_EXCEPTION("Not a readable file");
    }
    const auto size = static_cast<uint64_t>(status.st_size);
    if (size > kMaxLength) throw RUNTIME_EXCEPTION("Description too large");
    std::string bytes(static_cast<size_t>(size), '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    return bytes;
}

// `path` is the text after the colon, including slashes. A device must not make the library open
// other files than descriptions, so the extension is checked first.
NodeMapOwner LoadFileUrl(const std::string& path, const GenICam::gcstring& moduleId) {
    constexpr size_t kMaxPath = 512;
    const std::string file = FirstCharacters(path, kMaxPath);
    return Load(
        ExtensionOf(file), moduleId,
        [&](GenApi::CNodeMapRef& map) {
            const std::string bytes = ReadRegularFile(file);
            map._LoadXMLFromString(GenICam::gcstring(bytes.data(), bytes.size()));
        },
        [&](GenApi::CNodeMapRef& map) {
            const std::string bytes = ReadRegularFile(file);
            map._LoadXMLFromZIPData(bytes.data(), bytes.size());
        });
}

}  // namespace

NodeMapOwner LoadDescriptionFile(const char* path, const GenICam::gcstring& moduleId) {
    const File file(std::fopen(path, "r"), &std::fclose);
    if (file == nullptr) throw zelcam_exception(ZelCamErr_FileOpenFailed);
    return Load(
        ExtensionOf(path).substr(0, 3), moduleId,
        [path](GenApi::CNodeMapRef& map) { map._LoadXMLFromFile(path); },
        [path](GenApi::CNodeMapRef& map) { map._LoadXMLFromZIPFile(path); });
}

NodeMapOwner LoadDescriptionUrl(const GenTLModule<void*>& port, const std::string& url,
                                const GenICam::gcstring& moduleId) {
    const auto parts = ZelUrl::SplitUrl(url);
    if (!parts) throw RUNTIME_EXCEPTION("Invalid URL");
    if (parts->scheme == "HTTP") throw RUNTIME_EXCEPTION("Unsupported URL");
    NodeMapOwner map;
    if (parts->scheme == "LOCAL") {
        map = LoadRegisters(port, parts->body, moduleId);
    } else if (parts->scheme == "FILE") {
        map = LoadFileUrl(parts->path, moduleId);
    } else {
        throw RUNTIME_EXCEPTION("Invalid URL");
    }
    if (map == nullptr) throw RUNTIME_EXCEPTION("Invalid XML");
    return map;
}

}  // namespace ZelCameraApi::Internal
