#include "genapi/persistence/featureload.h"

#include <algorithm>
#include <functional>

#include <GenApi/ICategory.h>
#include <GenApi/ICommand.h>
#include <GenApi/ISelector.h>

#include "genapi/persistence/problem.h"
#include "genapi/persistence/samevalue.h"
#include "genapi/persistence/selectors.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;

namespace {

constexpr const char* kWriting = "Error while writing node '";
constexpr const char* kVerifying = "Error while verifying the value of node '";

// Whether a selector that cannot be written has the right value anyway.
bool Stands(IValue* selector, const gcstring& value) {
    bool isThere = false;
    ProblemOf([&] { isThere = HasValue(*selector, value); });
    return isThere;
}

// Each pass repairs at least one entry; only entries that undo one another need more passes than
// this.
constexpr int kMaxPasses = 100;

bool IsSelector(IValue* feature) {
    const auto* const selector = dynamic_cast<ISelector*>(feature);
    return selector != nullptr && selector->IsSelector();
}

size_t Count(const std::vector<bool>& marks) {
    return static_cast<size_t>(std::count(marks.begin(), marks.end(), true));
}

}  // namespace

FeatureLoad::FeatureLoad(const INodeMap& nodeMap, EntryList entries, bool verify,
                         std::chrono::milliseconds patience)
    : nodeMap_(nodeMap), entries_(entries), verify_(verify), patience_(patience) {
    items_.reserve(entries_.size());
    for (size_t i = 0; i < entries_.size(); ++i) {
        auto* const feature = dynamic_cast<IValue*>(nodeMap_.GetNode(entries_.Name(i)));
        if (feature == nullptr)
            failures_[i] = "Error while writing node: '" + entries_.Name(i) + "' not found ";
        // A category has no value to write.
        const bool isCategory = dynamic_cast<ICategory*>(feature) != nullptr;
        items_.push_back({isCategory ? nullptr : feature, IsSelector(feature)});
    }
}

bool FeatureLoad::Run() {
    Marks marked(items_.size(), true);
    for (Marks deviating;;) {
        Write(marked);
        if (!verify_) break;
        const Marks before = deviating;
        deviating = Compare();
        if (Count(deviating) == 0 || deviating == before || numPasses_ >= kMaxPasses) break;
        marked = Failed();
    }
    return failures_.empty() && commandFailures_.empty();
}

gcstring_vector FeatureLoad::Errors() const {
    gcstring_vector messages = commandFailures_;
    for (const auto& [entry, message] : failures_)
        messages.push_back(message);
    return messages;
}

void FeatureLoad::Write(Marks marked) {
    // Do not call a camera again that failed to answer.
    const bool isNotified = commandFailures_.empty();
    if (isNotified) Notify("DeviceRegistersStreamingStart");
    size_t numBefore = 0;
    size_t numFailed = Count(marked);
    do {
        numBefore = numFailed;
        WriteOnce(marked);
        marked = Failed();
        numFailed = Count(marked);
    } while (numFailed > 0 && numFailed < numBefore && numPasses_ < kMaxPasses);
    if (isNotified) Notify("DeviceRegistersStreamingEnd");
}

void FeatureLoad::WriteOnce(const Marks& marked) {
    ++numPasses_;
    Walk(marked, kWriting, [&](size_t entry) {
        IValue* const feature = items_[entry].feature;
        feature->FromString(entries_.Value(entry), verify_);
        rewritten_.insert(feature);
        return gcstring();
    });
}

// Compares the entries that did not fail; returns those that fail now.
FeatureLoad::Marks FeatureLoad::Compare() {
    Marks written = Failed();
    written.flip();
    Walk(written, kVerifying, [&](size_t entry) {
        IValue* const feature = items_[entry].feature;
        const gcstring& value = entries_.Value(entry);
        // A command has no value.
        if (dynamic_cast<ICommand*>(feature) != nullptr || HasValue(*feature, value))
            return gcstring();
        return "Error while verifying node '" + entries_.Name(entry) + "'. Expected '" + value +
               "', but found '" + feature->ToString() + "'";
    });
    Marks deviating = Failed();
    std::transform(deviating.begin(), deviating.end(), written.begin(), deviating.begin(),
                   std::logical_and<>());
    return deviating;
}

FeatureLoad::Marks FeatureLoad::Failed() const {
    Marks marks(items_.size(), false);
    for (const auto& [entry, message] : failures_)
        marks[entry] = items_[entry].feature != nullptr;
    return marks;
}

template <typename Operation>
void FeatureLoad::Walk(const Marks& marked, const char* what, Operation operation) {
    pending_.clear();
    misplaced_.clear();
    rewritten_.clear();
    for (size_t i = 0; i < items_.size(); ++i) {
        const Item& item = items_[i];
        if (item.feature == nullptr) continue;
        if (item.isSelector) pending_[item.feature] = i;
        // If a feature occurs twice, the later value must be the last one written.
        if (!marked[i] && rewritten_.count(item.feature) == 0) continue;
        PutSelectors();
        if (!item.isSelector) Attempt(what, i, operation);
    }
    PutSelectors();
}

void FeatureLoad::PutSelectors() {
    std::vector<size_t> entries;
    for (const auto& [selector, entry] : pending_)
        entries.push_back(entry);
    pending_.clear();
    std::sort(entries.begin(), entries.end());
    for (const size_t entry : entries) {
        IValue* const selector = items_[entry].feature;
        const bool isPut = Attempt(kWriting, entry, [&](size_t i) {
            selector->FromString(entries_.Value(i), verify_);
            return gcstring();
        });
        if (isPut || Stands(selector, entries_.Value(entry)))
            misplaced_.erase(selector);
        else
            misplaced_.insert(selector);
    }
}

// Runs the operation and records its failure, or removes an earlier one.
template <typename Operation>
bool FeatureLoad::Attempt(const char* what, size_t entry, Operation operation) {
    gcstring message;
    gcstring problem = ProblemOf([&] {
        // The value belongs to another setting of the selector.
        if (HasMisplacedSelector(items_[entry].feature))
            throw RUNTIME_EXCEPTION("A selector of the feature does not have its value");
        message = operation(entry);
    });
    if (!problem.empty()) message = what + entries_.Name(entry) + "': " + problem;
    if (message.empty()) {
        failures_.erase(entry);
        return true;
    }
    failures_[entry] = message;
    return false;
}

bool FeatureLoad::HasMisplacedSelector(IValue* feature) {
    if (misplaced_.empty()) return false;
    auto known = selectors_.find(feature);
    if (known == selectors_.end()) known = selectors_.emplace(feature, SelectorsOf(feature)).first;
    return std::any_of(known->second.begin(), known->second.end(),
                       [&](IValue* selector) { return misplaced_.count(selector) > 0; });
}

void FeatureLoad::Notify(const char* command) {
    const gcstring problem = NotifyCamera(nodeMap_, command, patience_);
    if (!problem.empty()) commandFailures_.push_back(problem);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
