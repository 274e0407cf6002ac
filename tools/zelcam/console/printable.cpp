#include "tools/zelcam/console/printable.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <unistd.h>

namespace ZelTool {

namespace {

struct Character {
    uint32_t value;
    size_t length;  // 0: invalid UTF-8
};

constexpr Character kNoCharacter = {0, 0};

uint8_t ByteAt(std::string_view text, size_t at) {
    return static_cast<uint8_t>(text[at]);
}

// The smallest value for each number of bytes: UTF-8 forbids longer forms than needed.
constexpr uint32_t kLeastValues[] = {0, 0, 0x80, 0x800, 0x10000};

Character FirstCharacter(std::string_view text) {
    const uint8_t first = ByteAt(text, 0);
    if (first < 0x80) return {first, 1};
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC0 || first > 0xF7 || text.size() < length) return kNoCharacter;
    uint32_t value = first & (0x7FU >> length);
    for (size_t i = 1; i < length; ++i) {
        if ((ByteAt(text, i) & 0xC0U) != 0x80) return kNoCharacter;
        value = value << 6 | (ByteAt(text, i) & 0x3FU);
    }
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < kLeastValues[length] || value > 0x10FFFF || isSurrogate) return kNoCharacter;
    return {value, length};
}

bool IsControl(uint32_t value) {
    return value < 0x20 || (value >= 0x7F && value < 0xA0);
}

// Separators of lines and paragraphs, and marks that make a text look like another one.
bool IsDeceptive(uint32_t value) {
    return value == 0x061C || value == 0x200E || value == 0x200F ||
           (value >= 0x2028 && value <= 0x202E) || (value >= 0x2066 && value <= 0x2069) ||
           value == 0xFEFF;
}

std::string Escape(const Character& character, char first) {
    if (first == '\n') return "\\n";
    if (first == '\t') return "\\t";
    if (first == '\r') return "\\r";
    char text[16];
    const bool isByte = character.length < 2;
    std::snprintf(text, sizeof text, isByte ? "\\x%02x" : "\\u{%04x}",
                  isByte ? static_cast<uint8_t>(first) : character.value);
    return text;
}

std::string Escaped(std::string_view text, bool keepsLines) {
    std::string result;
    while (!text.empty()) {
        size_t length = PrintableLength(text);
        if (length == 0 && keepsLines && text.front() == '\n') length = 1;
        if (length > 0) {
            result += text.substr(0, length);
        } else {
            const Character character = FirstCharacter(text);
            result += Escape(character, text.front());
            length = std::max<size_t>(character.length, 1);
        }
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace

size_t PrintableLength(std::string_view text) {
    const Character character = FirstCharacter(text);
    return IsControl(character.value) || IsDeceptive(character.value) ? 0 : character.length;
}

std::string Printable(std::string_view text) {
    return Escaped(text, false);
}

std::string PrintableLines(std::string_view text) {
    return Escaped(text, true);
}

TerminalGuard::TerminalGuard(std::ostream& stream, int descriptor) : stream_(stream) {
    if (isatty(descriptor) != 0) terminal_ = stream.rdbuf(this);
}

TerminalGuard::~TerminalGuard() {
    if (terminal_ == nullptr) return;
    sync();
    stream_.rdbuf(terminal_);
}

// Passes on whole lines, so that no character is cut.
std::streamsize TerminalGuard::xsputn(const char* text, std::streamsize size) {
    line_.append(text, static_cast<size_t>(size));
    return Pass(line_.rfind('\n') + 1) ? size : 0;
}

TerminalGuard::int_type TerminalGuard::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return 0;
    const char text = traits_type::to_char_type(character);
    return xsputn(&text, 1) == 1 ? character : traits_type::eof();
}

int TerminalGuard::sync() {
    return Pass(line_.size()) && terminal_->pubsync() == 0 ? 0 : -1;
}

bool TerminalGuard::Pass(size_t size) {
    const std::string text = PrintableLines(std::string_view(line_).substr(0, size));
    line_.erase(0, size);
    const auto length = static_cast<std::streamsize>(text.size());
    return terminal_->sputn(text.data(), length) == length;
}

}  // namespace ZelTool
