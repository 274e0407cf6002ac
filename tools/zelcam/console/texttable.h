// Tables, lines and lists of texts.
#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace ZelTool {

std::vector<std::string> LinesOf(const std::string& text);

std::string Joined(const std::vector<std::string>& texts, const std::string& between = ", ");

// The lines of a text, without blanks at their ends. A line of more than `width` characters breaks
// after a blank, "|" or "," if possible. 0: no line breaks.
std::vector<std::string> WrapText(const std::string& text, size_t width);

// Prints the lines of a text, each wrapped by WrapText and indented by two columns.
void PrintIndented(std::ostream& out, const std::string& text, size_t width);

// The number of columns of the terminal that `descriptor` writes to; the variable COLUMNS overrides
// it. 0 for a file or a pipe: programs that search the output need whole lines.
size_t TerminalWidth(int descriptor);

// Replaces a text before it is shown.
using TextFilter = std::function<std::string(const std::string& text)>;

// Prints rows. Each column is as wide as its widest cell. An empty cell shows as "-", any other
// after Printable and the filter, if there is one.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> headings, TextFilter filter = nullptr);

    void AddRow(std::vector<std::string> cells);

    // A line across all columns.
    void AddHeading(const std::string& text);

    // Lines below a row, across all columns, indented by `indent` characters.
    void AddNote(size_t indent, const std::string& text);

    // When the table is wider than `width`, cells and notes wrap; the first column wraps last. If
    // that does not suffice, the remaining columns continue on lines below. 0: nothing wraps.
    void Print(std::ostream& out, size_t width = 0) const;

  private:
    struct Row {
        std::vector<std::string> cells;  // a single cell goes across all columns
        size_t indent;
    };

    // From `first` to before `end`.
    struct Columns {
        size_t first;
        size_t end;
        size_t indent;
    };

    std::vector<size_t> Widths(size_t width) const;
    void PrintCells(std::ostream& out, const Row& row, const std::vector<size_t>& widths,
                    size_t width) const;
    void PrintColumns(std::ostream& out, const Row& row, const std::vector<size_t>& widths,
                      const Columns& columns) const;

    TextFilter filter_;
    std::vector<Row> rows_;  // the first holds the headings
};

}  // namespace ZelTool
