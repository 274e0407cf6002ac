#include "tools/zelcam/textfile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "tools/zelcam/failure.h"

namespace fs = std::filesystem;

namespace {

[[noreturn]] void ThrowUnwritable(const std::string& file, const std::string& why) {
    throw Failure(ExitCode::FileFailed, "the file " + file + " cannot be written: " + why);
}

// Where the file lies when links are followed. Only that can be replaced.
std::string TargetOf(const std::string& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status)) {
        if (fs::is_symlink(fs::symlink_status(file, error)))
            ThrowUnwritable(file, "it is a link that leads nowhere");
        return file;
    }
    if (!fs::is_regular_file(status)) ThrowUnwritable(file, "it is no file");
    if (euidaccess(file.c_str(), W_OK) != 0) ThrowUnwritable(file, std::strerror(errno));
    return fs::canonical(file, error).string();
}

// From the memory of the system to the disk.
bool Sync(const std::string& name) {
    const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    const bool isSynced = fsync(descriptor) == 0;
    close(descriptor);
    return isSynced;
}

}  // namespace

std::string ReadFile(const std::string& file) {
    errno = 0;
    std::ifstream in(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    if (!in.is_open() || errno != 0) {
        throw Failure(ExitCode::FileFailed,
                      "the file " + file + " cannot be read: " + std::strerror(errno));
    }
    return text;
}

void WriteFile(const std::string& file, const std::string& text) {
    errno = 0;
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    if (!out) ThrowUnwritable(file, std::strerror(errno));
}

TemporaryFile::TemporaryFile(const std::string& file) : name_(file + ".XXXXXX") {
    const int descriptor = mkstemp(name_.data());
    if (descriptor < 0) ThrowUnwritable(file, std::strerror(errno));
    close(descriptor);
}

TemporaryFile::~TemporaryFile() {
    unlink(name_.c_str());
}

Replacement::Replacement(const std::string& file)
    : target_(TargetOf(file)), folder_(fs::path(target_).parent_path() / ".zelcam-XXXXXX") {
    if (mkdtemp(folder_.data()) == nullptr) ThrowUnwritable(file, std::strerror(errno));
    name_ = folder_ + "/" + fs::path(target_).filename().string();
}

Replacement::~Replacement() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

void Replacement::TakePlace() const {
    std::error_code isNew;
    const fs::perms permissions = fs::status(target_, isNew).permissions();
    if (!isNew) fs::permissions(name_, permissions);
    if (!Sync(name_) || std::rename(name_.c_str(), target_.c_str()) != 0)
        ThrowUnwritable(target_, std::strerror(errno));
    // The file is there. Where a folder cannot be synced, that is all that can be had.
    (void)Sync(fs::path(folder_).parent_path().string());
}
