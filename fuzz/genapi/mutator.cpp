// How the fuzzer changes inputs of the target "description". Parts come from the descriptions in
// the folder that ZELCAM_FUZZ_DESCRIPTIONS names, for example descriptions of real cameras.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/genapi/document.h"
#include "fuzz/genapi/input.h"

// Changes bytes without a thought; where there is no fuzzer, there is none.
extern "C" size_t __attribute__((weak))
LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

using Fuzz::Choices;
using Fuzz::Document;
using Documents = std::vector<std::unique_ptr<Document>>;

// The memory of a fuzzer is bounded.
constexpr size_t kMaxDonorBytes = 4U << 20;

std::string ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Documents LoadDonors() {
    Documents donors;
    const char* const folder = std::getenv("ZELCAM_FUZZ_DESCRIPTIONS");
    if (folder == nullptr || *folder == '\0') return donors;
    std::vector<std::filesystem::path> paths(std::filesystem::directory_iterator(folder), {});
    std::sort(paths.begin(), paths.end());
    size_t bytes = 0;
    for (const auto& path : paths) {
        const std::string text = ContentOf(path);
        bytes += text.size();
        if (bytes > kMaxDonorBytes) break;
        auto donor = std::make_unique<Document>();
        if (donor->Parse(text)) donors.push_back(std::move(donor));
    }
    return donors;
}

size_t ChangeBytes(uint8_t* data, size_t size, size_t maxSize) {
    return LLVMFuzzerMutate != nullptr ? LLVMFuzzerMutate(data, size, maxSize) : size;
}

// The script is worth a change as well as the description.
std::string ChangeScript(std::string_view script) {
    constexpr size_t kMaxScript = 512;
    std::vector<uint8_t> bytes(script.begin(), script.end());
    const size_t size = std::min(bytes.size(), kMaxScript);
    bytes.resize(kMaxScript);
    bytes.resize(ChangeBytes(bytes.data(), size, kMaxScript));
    return {bytes.begin(), bytes.end()};
}

// The size of the new input, 0 when it would be too long.
size_t Join(const Document& document, std::string_view script, uint8_t* data, size_t maxSize) {
    std::string joined = document.Text();
    joined.append(script);
    if (joined.size() > maxSize) return 0;
    std::copy(joined.begin(), joined.end(), data);
    return joined.size();
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned seed) {
    static Documents donors = LoadDonors();
    Choices choices(nullptr, 0, seed);
    const Fuzz::Input input = Fuzz::SplitInput(data, size);
    Document document;
    if (choices.OneIn(16) || !document.Parse(input.description)) {
        return ChangeBytes(data, size, maxSize);
    }
    std::string script(input.script);
    if (choices.OneIn(4)) script = ChangeScript(script);
    if (!donors.empty() && choices.OneIn(8)) {
        document.Graft(*donors[choices.Below(donors.size())], choices);
    }
    for (size_t count = choices.OneIn(2) ? 1 : 1 + choices.Below(4); count > 0; --count)
        document.Change(choices);
    if (!choices.OneIn(16)) document.Mend(choices);
    const size_t joined = Join(document, script, data, maxSize);
    return joined != 0 ? joined : ChangeBytes(data, size, maxSize);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* data1, size_t size1,
                                            const uint8_t* data2, size_t size2, uint8_t* out,
                                            size_t maxOutSize, unsigned seed) {
    Choices choices(nullptr, 0, seed);
    const Fuzz::Input first = Fuzz::SplitInput(data1, size1);
    const Fuzz::Input second = Fuzz::SplitInput(data2, size2);
    Document document;
    Document donor;
    if (!document.Parse(first.description) || !donor.Parse(second.description)) return 0;
    document.Graft(donor, choices);
    document.Mend(choices);
    return Join(document, choices.OneIn(2) ? first.script : second.script, out, maxOutSize);
}
