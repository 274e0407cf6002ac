// Runs checks and collects their verdicts.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ZelTool {

// Ends a check that does not apply, and gives the reason.
class Skip : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct CheckResult {
    enum class Verdict { Passed, Failed, Skipped, Interrupted };

    std::string name;
    Verdict verdict;
    std::string detail;
    double milliseconds;
};

std::string VerdictWords(CheckResult::Verdict verdict);

class CheckList {
  public:
    // Calls `report` with each result.
    explicit CheckList(std::function<void(const CheckResult&)> report)
        : report_(std::move(report)) {}

    // Runs `check`, which returns a detail, and returns whether it passed. An exception makes it
    // fail, with the exception's text as the detail; a Skip makes it skipped. After Ctrl-C, an
    // exception counts as interrupted, and no further check runs.
    bool Run(const std::string& name, const std::function<std::string()>& check);

    const std::vector<CheckResult>& Results() const { return results_; }
    size_t Count(CheckResult::Verdict verdict) const;

  private:
    std::function<void(const CheckResult&)> report_;
    std::vector<CheckResult> results_;
};

}  // namespace ZelTool
