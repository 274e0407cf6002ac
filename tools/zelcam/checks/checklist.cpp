#include "tools/zelcam/checks/checklist.h"

#include <algorithm>
#include <chrono>

#include <Base/GCBase.h>

#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

std::string VerdictWords(CheckResult::Verdict verdict) {
    switch (verdict) {
        case CheckResult::Verdict::Passed:
            return "passed";
        case CheckResult::Verdict::Failed:
            return "FAILED";
        case CheckResult::Verdict::Interrupted:
            return "interrupted";
        default:
            return "skipped";
    }
}

bool CheckList::Run(const std::string& name, const std::function<std::string()>& check) {
    if (Interrupted()) return false;
    using Clock = std::chrono::steady_clock;
    CheckResult result{name, CheckResult::Verdict::Failed, "", 0};
    const Clock::time_point start = Clock::now();
    try {
        result.detail = check();
        result.verdict = CheckResult::Verdict::Passed;
    } catch (const Skip& skip) {
        result.detail = skip.what();
        result.verdict = CheckResult::Verdict::Skipped;
    } catch (const GenICam::GenericException& error) {
        result.detail = error.GetDescription();
    } catch (const std::exception& error) {
        result.detail = error.what();
    }
    if (result.verdict == CheckResult::Verdict::Failed && Interrupted()) {
        result.verdict = CheckResult::Verdict::Interrupted;
        result.detail.clear();
    }
    result.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    results_.push_back(result);
    report_(result);
    return result.verdict == CheckResult::Verdict::Passed;
}

size_t CheckList::Count(CheckResult::Verdict verdict) const {
    return static_cast<size_t>(
        std::count_if(results_.begin(), results_.end(),
                      [&](const CheckResult& result) { return result.verdict == verdict; }));
}

}  // namespace ZelTool
