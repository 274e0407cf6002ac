#include "genapi/description/archive.h"

#include <memory>
#include <zip.h>

#include <Base/GCException.h>

#include "genapi/description/limits.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseEntry {
    void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};
using Archive = std::unique_ptr<zip_t, CloseArchive>;
using Entry = std::unique_ptr<zip_file_t, CloseEntry>;

[[noreturn]] void ThrowInvalidArchive() {
    throw RUNTIME_EXCEPTION("Invalid ZIP string in ParseXmlBuffer");
}

// Null when the bytes are not an archive.
Archive TryOpen(std::string_view bytes) {
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr);
    if (!source) return nullptr;
    Archive archive(zip_open_from_source(source, ZIP_RDONLY, nullptr));
    if (!archive) zip_source_free(source);
    return archive;
}

// libzip looks for the end of the directory in the last 64 KB only, but a device may send the whole
// memory area that holds the archive.
std::string_view WithoutTail(std::string_view bytes) {
    constexpr size_t kEndRecordSize = 22;
    const size_t end = bytes.rfind(std::string_view("PK\5\6", 4));
    return end == std::string_view::npos ? bytes : bytes.substr(0, end + kEndRecordSize);
}

std::string ReadEntry(zip_file_t* entry, size_t size) {
    std::string contents(size, '\0');
    size_t done = 0;
    while (done < size) {
        const zip_int64_t count = zip_fread(entry, &contents[done], size - done);
        if (count <= 0) ThrowInvalidArchive();
        done += static_cast<size_t>(count);
    }
    char more;  // libzip compares the check sum at the end
    if (zip_fread(entry, &more, 1) != 0) ThrowInvalidArchive();
    return contents;
}

}  // namespace

std::string UnzipFirstEntry(std::string_view bytes) {
    if (bytes.size() > kMaxArchiveSize) ThrowInvalidArchive();
    Archive archive = TryOpen(bytes);
    if (!archive) archive = TryOpen(WithoutTail(bytes));
    zip_stat_t stat;
    if (!archive || zip_stat_index(archive.get(), 0, 0, &stat) != 0 ||
        (stat.valid & ZIP_STAT_SIZE) == 0 || stat.size > kMaxXmlSize ||
        stat.size / kMaxArchiveRatio > bytes.size())
        ThrowInvalidArchive();
    const Entry entry(zip_fopen_index(archive.get(), 0, 0));
    if (!entry) ThrowInvalidArchive();
    return ReadEntry(entry.get(), static_cast<size_t>(stat.size));
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
