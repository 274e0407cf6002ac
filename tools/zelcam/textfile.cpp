#include "tools/zelcam/textfile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "tools/zelcam/failure.h"

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
    if (!out) {
        throw Failure(ExitCode::FileFailed,
                      "the file " + file + " cannot be written: " + std::strerror(errno));
    }
}

TemporaryFile::TemporaryFile(const std::string& file) : name_(file + ".XXXXXX") {
    const int descriptor = mkstemp(name_.data());
    if (descriptor < 0) {
        throw Failure(ExitCode::FileFailed,
                      "the file " + file + " cannot be written: " + std::strerror(errno));
    }
    close(descriptor);
}

TemporaryFile::~TemporaryFile() {
    unlink(name_.c_str());
}
