// Texts of cameras and producers, for people to read.
#ifndef ZELCAM_TOOLS_ZELCAM_PRINTABLE_H
#define ZELCAM_TOOLS_ZELCAM_PRINTABLE_H

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

// The text on one line, with nothing in it that a terminal obeys: control characters (C0, DEL, C1),
// bytes that are no UTF-8, line separators, and what changes the direction of writing become \n,
// \t, \r, \xHH or \u{HHHH}. Backslashes stay, so that a second pass changes nothing.
std::string Printable(std::string_view text);

// The same, but line breaks stay: for texts of several lines, whose parts are Printable.
std::string PrintableLines(std::string_view text);

// Length of the UTF-8 character that the text, which is not empty, begins with, if it is one that
// Printable leaves alone; else 0.
size_t PrintableLength(std::string_view text);

// While this object lives, what a stream writes to a terminal passes PrintableLines, whoever wrote
// it. Does nothing for a descriptor that is no terminal: pipes and files get what cameras say.
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
    std::streambuf* terminal_ = nullptr;  // null when it is none
    std::string line_;                    // what of it was written so far
};

#endif  // ZELCAM_TOOLS_ZELCAM_PRINTABLE_H
