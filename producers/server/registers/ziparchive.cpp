#include "producers/server/registers/ziparchive.h"

#include <memory>
#include <stdexcept>
#include <zip.h>

namespace ZelCti {

namespace {

using Source = std::unique_ptr<zip_source_t, void (*)(zip_source_t*)>;

void Check(bool done, const char* step) {
    if (!done) throw std::runtime_error(std::string("the archive cannot be made: ") + step);
}

// Closes the archive, which writes it; discards it when that fails.
void Write(zip_t* archive) {
    if (zip_close(archive) == 0) return;
    zip_discard(archive);
    Check(false, "write");
}

std::string BytesOf(zip_source_t* source) {
    zip_stat_t stat;
    Check(zip_source_stat(source, &stat) == 0, "size");
    std::string bytes(stat.size, '\0');
    Check(zip_source_open(source) == 0, "open");
    const zip_int64_t size = zip_source_read(source, bytes.data(), bytes.size());
    zip_source_close(source);
    Check(size == static_cast<zip_int64_t>(bytes.size()), "read");
    return bytes;
}

}  // namespace

std::string ZipArchiveOf(const std::string& fileName, const std::string& text) {
    const Source target(zip_source_buffer_create(nullptr, 0, 0, nullptr), zip_source_free);
    Check(target != nullptr, "memory");
    zip_t* const archive = zip_open_from_source(target.get(), ZIP_TRUNCATE, nullptr);
    Check(archive != nullptr, "create");
    zip_source_keep(target.get());  // the archive frees one reference when it is closed
    zip_source_t* const content = zip_source_buffer(archive, text.data(), text.size(), 0);
    const zip_int64_t index = zip_file_add(archive, fileName.c_str(), content, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(content);
        zip_discard(archive);
        Check(false, "add");
    }
    zip_file_set_mtime(archive, static_cast<zip_uint64_t>(index), 0, 0);
    Write(archive);
    return BytesOf(target.get());
}

}  // namespace ZelCti
