#include "tools/zelcam/texttable.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "tools/zelcam/printable.h"

namespace {

// Characters, not bytes: names may be UTF-8, whose continuation bytes are 10xxxxxx.
size_t Width(const std::string& text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

}  // namespace

TextTable::TextTable(std::vector<std::string> headings) {
    rows_.push_back(std::move(headings));
}

void TextTable::AddRow(std::vector<std::string> cells) {
    cells.resize(rows_.front().size());
    for (std::string& cell : cells) {
        cell = cell.empty() ? "-" : Printable(cell);
    }
    rows_.push_back(std::move(cells));
}

void TextTable::AddHeading(const std::string& text) {
    rows_.push_back({Printable(text)});
}

void TextTable::Print(std::ostream& out) const {
    std::vector<size_t> widths(rows_.front().size());
    for (const auto& row : rows_) {
        if (row.size() != widths.size()) continue;
        for (size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], Width(row[i]));
    }
    for (const auto& row : rows_) {
        if (row.size() != widths.size()) {
            out << row.front() << '\n';
            continue;
        }
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += "  " + row[i] + std::string(widths[i] - Width(row[i]), ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}
