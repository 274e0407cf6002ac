#include "tools/zelcam/checks/checklist.h"

#include <algorithm>
#include <chrono>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/wordtable.h"

namespace ZelTool {

namespace {

using Verdict = CheckResult::Verdict;

constexpr Word<Verdict> kVerdicts[] = {{Verdict::Passed, "passed"},
                                       {Verdict::Failed, "FAILED"},
                                       {Verdict::Skipped, "skipped"},
                                       {Verdict::Interrupted, "interrupted"}};

}  // namespace

std::string VerdictWords(CheckResult::Verdict verdict) {
    return WordsFor(verdict, kVerdicts, "");
}

bool CheckList::Run(const std::string& name, const std::function<std::string()>& check) {
    if (Interrupted()) return false;
    using Clock = std::chrono::steady_clock;
    CheckResult result{name, Verdict::Failed, "", 0};
    const Clock::time_point start = Clock::now();
    const auto failure = FailureOf([&] {
        try {
            result.detail = check();
            result.verdict = Verdict::Passed;
        } catch (const Skip& skip) {
            result.detail = skip.what();
            result.verdict = Verdict::Skipped;
        }
    });
    if (failure) result.detail = failure->what();
    if (result.verdict == Verdict::Failed && Interrupted()) {
        result.verdict = Verdict::Interrupted;
        result.detail.clear();
    }
    result.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    results_.push_back(result);
    report_(result);
    return result.verdict == Verdict::Passed;
}

size_t CheckList::Count(Verdict verdict) const {
    return static_cast<size_t>(
        std::count_if(results_.begin(), results_.end(),
                      [&](const CheckResult& result) { return result.verdict == verdict; }));
}

}  // namespace ZelTool
