// The figures of a run: collected by the groups of benchmarks, shown as one table or as JSON.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace Bench {

// One measured quantity. Smaller is better, unless there is neither a base nor a limit.
struct Figure {
    std::string group;
    std::string name;
    std::string unit;
    std::vector<double> rounds;        // one value each; the figure is their median
    std::string baseName{};            // what it is compared with; empty for nothing
    std::vector<double> baseRounds{};  // measured in turn with `rounds`
    // The most that the ratio to the base, or without a base the value, should be.
    std::optional<double> limit{};
    bool must = false;  // beyond the limit is an error, on a busy machine too

    double Value() const;
    double Base() const;
    std::optional<double> Ratio() const;  // the median of the rounds' ratios
    bool IsMissed() const;
};

class Report {
  public:
    void Add(Figure figure);

    void WriteTable(std::ostream& out) const;
    void WriteJson(std::ostream& out) const;

    bool HasErrors() const;

  private:
    std::vector<Figure> figures_;
};

}  // namespace Bench
