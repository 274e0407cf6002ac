// Checks with a verdict each.
#ifndef ZELCAM_TOOLS_ZELCAM_CHECKLIST_H
#define ZELCAM_TOOLS_ZELCAM_CHECKLIST_H

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

// Ends a check that does not apply, with the reason.
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
    // `report` is called with each result as it comes.
    explicit CheckList(std::function<void(const CheckResult&)> report)
        : report_(std::move(report)) {}

    // `check` tells what it saw. It fails by an exception, whose words are the detail, and does not
    // count with a Skip. Whether it passed. After Ctrl-C an exception is no failure of the camera,
    // and further checks are not made.
    bool Run(const std::string& name, const std::function<std::string()>& check);

    const std::vector<CheckResult>& Results() const { return results_; }
    size_t Count(CheckResult::Verdict verdict) const;

  private:
    std::function<void(const CheckResult&)> report_;
    std::vector<CheckResult> results_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_CHECKLIST_H
