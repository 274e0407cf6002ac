// Runs a fuzz target once over every file of its corpus, without a fuzzer: `replay FOLDER`.
// A finding ends the program, and the last name printed is that of its input.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<char> contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot open " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

void replay(const std::filesystem::path& path) {
    std::printf("%s\n", path.filename().c_str());
    std::fflush(stdout);
    const std::vector<char> content = contentOf(path);
    // Memory of the exact size, so that a sanitizer sees a read beyond it.
    const std::unique_ptr<std::uint8_t[]> data(new std::uint8_t[content.size()]);
    std::copy(content.begin(), content.end(), data.get());
    LLVMFuzzerTestOneInput(data.get(), content.size());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        replay(entry.path());
        ++count;
    }
    std::printf("%zu inputs\n", count);
    // An empty corpus tests nothing.
    return count == 0 ? 1 : 0;
}
