// Texts of cameras and producers, made safe for a terminal.
#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace ZelTool {

// The text on one line, without anything that controls a terminal. Control characters (C0, DEL,
// C1), invalid UTF-8, line separators and characters that change the writing direction become \n,
// \t, \r, \xHH or \u{HHHH}. Backslashes stay, so that a second pass changes nothing.
std::string Printable(std::string_view text);

// The same for a text of several lines: line breaks stay.
std::string PrintableLines(std::string_view text);

// The length of the first UTF-8 character of the text, which is not empty; 0 when Printable would
// change that character.
size_t PrintableLength(std::string_view text);

// While this object lives, everything that the stream writes to a terminal passes through
// PrintableLines. For a pipe or a file it does nothing: these get the texts as cameras send them.
class TerminalGuard final : private std::streambuf {
  public:
    TerminalGuard(std::ostream& stream, int descriptor);
    ~TerminalGuard() override;
    TerminalGuard(const TerminalGuard&) = delete;
    TerminalGuard& operator=(const TerminalGuard&) = delete;

  private:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;
    bool Pass(size_t size);

    std::ostream& stream_;
    std::streambuf* terminal_ = nullptr;  // null for a pipe or a file
    std::string line_;                    // the unfinished line
};

}  // namespace ZelTool
