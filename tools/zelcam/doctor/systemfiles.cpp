#include "tools/zelcam/doctor/systemfiles.h"

#include <fstream>
#include <iterator>

#include "tools/zelcam/console/numbertext.h"

namespace ZelTool {

std::optional<std::string> ReadText(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) return std::nullopt;
    std::string text{std::istreambuf_iterator<char>(in), {}};
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

std::optional<uint64_t> ReadCount(const std::string& file) {
    const std::optional<std::string> text = ReadText(file);
    return text ? ParseCount(*text) : std::nullopt;
}

}  // namespace ZelTool
