#include "tools/zelcam/camera/description.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <zip.h>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/textfile.h"

namespace ZelTool {

namespace {

// The limit of the engine.
constexpr uint64_t kLargestDescription = uint64_t{32} << 20;

bool ParseHex(const std::string& text, uint64_t& number) {
    char* end = nullptr;
    number = std::strtoull(text.c_str(), &end, 16);
    return !text.empty() && *end == '\0';
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool HasDescriptionName(const std::string& file) {
    const std::string ending = Lower(file.substr(file.size() - std::min<size_t>(file.size(), 4)));
    return ending == ".xml" || ending == ".zip";
}

[[noreturn]] void Damaged(const char* why) {
    throw Failure(ExitCode::FileFailed,
                  std::string("the archive with the description is damaged: ") + why);
}

// The first file in the archive. The archive of a description has only one.
std::string FirstFile(zip_t* archive) {
    zip_stat_t stat{};
    if (zip_stat_index(archive, 0, 0, &stat) != 0) Damaged(zip_strerror(archive));
    if (stat.size > kLargestDescription) Damaged("the file in it is too large");
    const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(zip_fopen_index(archive, 0, 0),
                                                                 zip_fclose);
    if (!file) Damaged(zip_strerror(archive));
    std::string text(stat.size, '\0');
    if (zip_fread(file.get(), text.data(), text.size()) != static_cast<zip_int64_t>(text.size())) {
        Damaged("the file in it ends early");
    }
    return text;
}

}  // namespace

std::optional<DescriptionUrl> ParseDescriptionUrl(const std::string& url) {
    const size_t colon = url.find(':');
    if (colon == std::string::npos) return std::nullopt;
    const std::string scheme = Lower(url.substr(0, colon));
    const std::string rest = url.substr(colon + 1, url.find('?') - (colon + 1));
    DescriptionUrl result;
    if (scheme == "file") {
        // "File:/path" and "File:///path" name the same file.
        const size_t slashes = rest.find_first_not_of('/');
        if (slashes == std::string::npos) return std::nullopt;
        result.file = rest.substr(slashes > 1 ? slashes - 1 : 0);
        return HasDescriptionName(result.file) ? std::optional(result) : std::nullopt;
    }
    const size_t first = rest.find(';');
    const size_t second = rest.find(';', first + 1);
    if (scheme != "local" || first == std::string::npos || second == std::string::npos) {
        return std::nullopt;
    }
    result.local = true;
    const size_t name = std::min(rest.find_first_not_of('/'), first);
    result.file = rest.substr(name, first - name);
    const bool numbers = ParseHex(rest.substr(first + 1, second - first - 1), result.address) &&
                         ParseHex(rest.substr(second + 1), result.size);
    if (!numbers || result.size > kLargestDescription) return std::nullopt;
    return result;
}

std::string ReadDescriptionFile(const std::string& file) {
    return ReadFile(file, kLargestDescription);
}

std::string Unpack(std::string bytes) {
    if (bytes.compare(0, 2, "PK") != 0) {
        // Cameras pad the text with zeros to whole registers.
        const size_t last = bytes.find_last_not_of('\0');
        bytes.resize(last == std::string::npos ? 0 : last + 1);
        return bytes;
    }
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    zip_t* opened = source == nullptr ? nullptr : zip_open_from_source(source, ZIP_RDONLY, &error);
    const std::string why = zip_error_strerror(&error);
    zip_error_fini(&error);
    if (opened == nullptr) {
        zip_source_free(source);
        Damaged(why.c_str());
    }
    const std::unique_ptr<zip_t, void (*)(zip_t*)> archive(opened, zip_discard);
    return FirstFile(archive.get());
}

}  // namespace ZelTool
