// Rows of text in columns, and text in lines.
#ifndef ZELCAM_TOOLS_ZELCAM_TEXTTABLE_H
#define ZELCAM_TOOLS_ZELCAM_TEXTTABLE_H

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

// Lines of at most `width` characters, broken behind blanks, "|" and "," where there are some. A
// width of 0 leaves the text in one line.
std::vector<std::string> WrapText(const std::string& text, size_t width);

// Prints the lines of a text, each wrapped as by WrapText, two columns further right.
void PrintIndented(std::ostream& out, const std::string& text, size_t width);

// The columns of the terminal that `descriptor` writes to; the variable COLUMNS goes before. 0 for
// a file or a pipe: lines stay whole there, for programs that search them.
size_t TerminalWidth(int descriptor);

// What is shown instead of a text.
using TextFilter = std::function<std::string(const std::string& text)>;

// Prints rows with columns as wide as their widest cell. Empty cells show as "-", others Printable
// and then through the filter, if there is one.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> headings, TextFilter filter = nullptr);

    void AddRow(std::vector<std::string> cells);

    // A line across all columns.
    void AddHeading(const std::string& text);

    // Lines below a row, across all columns from the `indent`th on.
    void AddNote(size_t indent, const std::string& text);

    // Cells and notes wrap where a `width` is given and the table is wider, cells of the first
    // column last. Columns for which that is too narrow go on in lines below.
    void Print(std::ostream& out, size_t width = 0) const;

  private:
    struct Row {
        std::vector<std::string> cells;  // one: a line across all columns
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

#endif  // ZELCAM_TOOLS_ZELCAM_TEXTTABLE_H
