// Zip archives for tests.
#pragma once

#include <string>
#include <utility>
#include <vector>
#include <zip.h>

namespace test {

// An archive in memory with the given entries: name and contents.
inline std::string Archive(const std::vector<std::pair<std::string, std::string>>& entries,
                           int method = ZIP_CM_DEFLATE) {
    zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_source_keep(target);
    zip_t* zip = zip_open_from_source(target, ZIP_TRUNCATE, nullptr);
    for (const auto& [name, contents] : entries) {
        zip_source_t* source = zip_source_buffer(zip, contents.data(), contents.size(), 0);
        const zip_int64_t index = zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8);
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), method, 9);
    }
    zip_close(zip);
    zip_source_open(target);
    zip_source_seek(target, 0, SEEK_END);
    std::string bytes(static_cast<size_t>(zip_source_tell(target)), '\0');
    zip_source_seek(target, 0, SEEK_SET);
    zip_source_read(target, &bytes[0], bytes.size());
    zip_source_close(target);
    zip_source_free(target);
    return bytes;
}

}  // namespace test
