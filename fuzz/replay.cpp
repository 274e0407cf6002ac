// Runs a fuzz target once over every file of its corpus, without a fuzzer: `replay FOLDER`.
// A finding ends the program, and the last name printed is that of its input.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::vector<char> ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot open " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

void Replay(const std::filesystem::path& path) {
    std::printf("%s\n", path.filename().c_str());
    std::fflush(stdout);
    const std::vector<char> content = ContentOf(path);
    // Memory of the exact size, so that a sanitizer sees a read beyond it.
    const std::unique_ptr<uint8_t[]> data(new uint8_t[content.size()]);
    std::copy(content.begin(), content.end(), data.get());
    LLVMFuzzerTestOneInput(data.get(), content.size());
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) throw std::runtime_error("usage: replay FOLDER");
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        Replay(entry.path());
        ++count;
    }
    if (count == 0) throw std::runtime_error("an empty corpus tests nothing");
    std::printf("%zu inputs\n", count);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
