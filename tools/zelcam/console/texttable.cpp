#include "tools/zelcam/console/texttable.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <ostream>
#include <sstream>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

#include "tools/zelcam/console/numbertext.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

constexpr size_t kColumnGap = 2;   // before each column
constexpr size_t kFoldIndent = 4;  // before columns that continue below
constexpr size_t kNarrow = 12;     // columns shrink no further

// In UTF-8, every byte of a character but the first is 10xxxxxx.
bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

size_t Width(const std::string& text) {
    return text.size() -
           static_cast<size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
}

// The end of a line of at most `width` characters that begins at `begin`.
size_t EndOfLine(const std::string& text, size_t begin, size_t width) {
    const size_t indent = text.find_first_not_of(' ', begin);
    size_t mayEnd = begin;
    size_t used = 0;
    for (size_t at = begin; at < text.size(); ++at) {
        if (text[at] == ' ' && at > indent) mayEnd = at;
        if (!IsContinuation(text[at]) && used++ == width) return mayEnd == begin ? at : mayEnd;
        if (text[at] == '|' || text[at] == ',') mayEnd = at + 1;
    }
    return text.size();
}

// Widths with which each column fits on a line of its own.
std::vector<size_t> Folded(std::vector<size_t> widths, size_t width) {
    const size_t widest =
        std::max(width, kFoldIndent + kColumnGap + kNarrow) - kFoldIndent - kColumnGap;
    for (size_t& each : widths)
        each = std::min(each, widest);
    return widths;
}

std::string WithoutBlanksBehind(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::string Joined(const std::vector<std::string>& texts, const std::string& between) {
    std::string joined;
    for (const std::string& text : texts)
        joined += (joined.empty() ? "" : between) + text;
    return joined;
}

std::vector<std::string> WrapText(const std::string& text, size_t width) {
    std::vector<std::string> wrapped;
    for (const std::string& line : LinesOf(text)) {
        size_t begin = 0;
        do {
            const size_t end = width == 0 ? line.size() : EndOfLine(line, begin, width);
            wrapped.push_back(WithoutBlanksBehind(line.substr(begin, end - begin)));
            begin = std::min(line.find_first_not_of(' ', end), line.size());
        } while (begin < line.size());
    }
    return wrapped.empty() ? std::vector<std::string>{""} : wrapped;
}

void PrintIndented(std::ostream& out, const std::string& text, size_t width) {
    for (const std::string& line : WrapText(text, width > kColumnGap ? width - kColumnGap : 0))
        out << std::string(kColumnGap, ' ') << line << '\n';
}

size_t TerminalWidth(int descriptor) {
    constexpr uint64_t kLeast = 20;  // nobody reads a narrower terminal
    if (isatty(descriptor) == 0) return 0;
    const char* const columns = std::getenv("COLUMNS");
    uint64_t width = columns == nullptr ? 0 : ParseCount(columns).value_or(0);
    winsize size{};
    if (width == 0 && ioctl(descriptor, TIOCGWINSZ, &size) == 0) width = size.ws_col;
    return width == 0 ? 0 : static_cast<size_t>(std::max(width, kLeast));
}

TextTable::TextTable(std::vector<std::string> headings, TextFilter filter)
    : filter_(std::move(filter)) {
    rows_.push_back({std::move(headings), 0});
}

void TextTable::AddRow(std::vector<std::string> cells) {
    cells.resize(rows_.front().cells.size());
    for (std::string& cell : cells) {
        cell = cell.empty() ? "-" : Printable(cell);
        if (filter_) cell = filter_(cell);
    }
    rows_.push_back({std::move(cells), 0});
}

void TextTable::AddHeading(const std::string& text) {
    rows_.push_back({{Printable(text)}, 0});
}

void TextTable::AddNote(size_t indent, const std::string& text) {
    rows_.push_back({{Printable(text)}, indent});
}

// The widest column shrinks first. The first column, which holds names, shrinks only when no other
// can. If that does not suffice, columns keep their widths and continue on lines below.
std::vector<size_t> TextTable::Widths(size_t width) const {
    std::vector<size_t> widths(rows_.front().cells.size());
    for (const Row& row : rows_) {
        if (row.cells.size() != widths.size()) continue;
        for (size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], Width(row.cells[i]));
    }
    size_t total = std::accumulate(widths.begin(), widths.end(), kColumnGap * widths.size());
    const std::vector<size_t> natural = widths;
    for (; width != 0 && total > width; --total) {
        const auto widest = std::max_element(widths.begin() + 1, widths.end());
        if (widest != widths.end() && *widest > kNarrow) {
            --*widest;
        } else if (widths.front() > kNarrow) {
            --widths.front();
        } else {
            return Folded(natural, width);
        }
    }
    return widths;
}

// Prints as many columns side by side as fit, and the others on lines below.
void TextTable::PrintCells(std::ostream& out, const Row& row, const std::vector<size_t>& widths,
                           size_t width) const {
    for (size_t first = 0, end = 0; first < widths.size(); first = end) {
        const size_t indent = first == 0 ? 0 : kFoldIndent;
        size_t used = indent;
        do
            used += kColumnGap + widths[end++];
        while (end < widths.size() && (width == 0 || used + kColumnGap + widths[end] <= width));
        PrintColumns(out, row, widths, {first, end, indent});
    }
}

void TextTable::PrintColumns(std::ostream& out, const Row& row, const std::vector<size_t>& widths,
                             const Columns& columns) const {
    std::vector<std::vector<std::string>> cells;
    size_t height = 0;
    for (size_t i = columns.first; i < columns.end; ++i) {
        cells.push_back(WrapText(row.cells[i], widths[i]));
        height = std::max(height, cells.back().size());
    }
    for (size_t n = 0; n < height; ++n) {
        std::string line(columns.indent, ' ');
        for (size_t i = columns.first; i < columns.end; ++i) {
            const std::vector<std::string>& cell = cells[i - columns.first];
            const std::string part = n < cell.size() ? cell[n] : "";
            line += std::string(kColumnGap, ' ') + part + std::string(widths[i] - Width(part), ' ');
        }
        out << WithoutBlanksBehind(line) << '\n';
    }
}

void TextTable::Print(std::ostream& out, size_t width) const {
    const std::vector<size_t> widths = Widths(width);
    for (const Row& row : rows_) {
        if (row.cells.size() == widths.size()) {
            PrintCells(out, row, widths, width);
            continue;
        }
        const size_t rest = width > row.indent ? width - row.indent : width;
        for (const std::string& line : WrapText(row.cells.front(), rest))
            out << std::string(row.indent, ' ') << line << '\n';
    }
}

}  // namespace ZelTool
