// Rows of text in columns.
#ifndef ZELCAM_TOOLS_ZELCAM_TEXTTABLE_H
#define ZELCAM_TOOLS_ZELCAM_TEXTTABLE_H

#include <iosfwd>
#include <string>
#include <vector>

// Prints rows with columns as wide as their widest cell. Empty cells show as "-", others Printable.
class TextTable {
  public:
    explicit TextTable(std::vector<std::string> headings);

    void AddRow(std::vector<std::string> cells);

    // A line across all columns.
    void AddHeading(const std::string& text);
    void Print(std::ostream& out) const;

  private:
    std::vector<std::vector<std::string>> rows_;  // the first holds the headings; one cell: a line
};

#endif  // ZELCAM_TOOLS_ZELCAM_TEXTTABLE_H
