#include "tools/zelcam/frames/framename.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

std::string FourDigits(uint64_t number) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
}

// Whether a character of that length is safe in a file name, such as a letter of any script.
bool IsFileNameSafe(const std::string& text, size_t at, size_t length) {
    const char c = text[at];
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
                         (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
    // A dot at the beginning could hide the file or lead out of the folder.
    return length > 1 || (length == 1 && (isPlain || (c == '.' && at > 0)));
}

// Converts a text of a camera to a part of a file name, which is never empty and leaves room for
// the rest of the name.
std::string FileNameSafe(const std::string& text) {
    constexpr size_t kLongest = 100;
    std::string safe;
    for (size_t at = 0; at < text.size();) {
        const size_t length = PrintableLength(std::string_view(text).substr(at));
        const size_t step = std::max<size_t>(length, 1);
        if (safe.size() + step > kLongest) break;
        safe += IsFileNameSafe(text, at, length) ? text.substr(at, length) : "_";
        at += step;
    }
    return safe.empty() ? "_" : safe;
}

// The position of the extension in a file name. The dot of a hidden file does not begin one.
size_t EndingOf(const std::string& name) {
    return name.size() - std::filesystem::path(name).extension().native().size();
}

}  // namespace

FileNamePattern::FileNamePattern(std::string pattern) : pattern_(std::move(pattern)) {
    Expand(0, 0, "");  // throws for a pattern that no frame can fill
}

std::string FileNamePattern::Expand(uint64_t number, uint64_t frameId,
                                    const std::string& cameraId) const {
    std::string name;
    for (size_t at = 0;;) {
        const size_t open = pattern_.find('{', at);
        name += pattern_.substr(at, open - at);
        if (open == std::string::npos) return name;
        const size_t close = pattern_.find('}', open);
        if (close == std::string::npos) {
            throw Failure(ExitCode::Usage, "--output has a { without }");
        }
        const std::string place = pattern_.substr(open + 1, close - open - 1);
        if (place == "n") {
            name += FourDigits(number);
        } else if (place == "frame") {
            name += std::to_string(frameId);
        } else if (place == "camera") {
            name += FileNameSafe(cameraId);
        } else {
            throw Failure(ExitCode::Usage,
                          "--output has an unknown {" + place + "}; use {n}, {frame} or {camera}");
        }
        at = close + 1;
    }
}

bool FileNamePattern::Has(const std::string& place) const {
    return pattern_.find("{" + place + "}") != std::string::npos;
}

std::string FrameNamer::NameOf(uint64_t number, uint64_t frameId, bool incomplete) {
    std::string name = pattern_.Expand(number, frameId, cameraId_);
    const bool isFresh = !incomplete && frameId >= unusedFrom_ && frameId < UINT64_MAX;
    std::string mark = incomplete ? "-incomplete" : "";
    if (!isFresh && pattern_.Has("frame") && !pattern_.Has("n")) mark += "-" + FourDigits(number);
    if (isFresh) unusedFrom_ = frameId + 1;
    return name.insert(EndingOf(name), mark);
}

}  // namespace ZelTool
