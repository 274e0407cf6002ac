#include "genapi/persistence/featurestore.h"

#include <algorithm>

#include <GenApi/IDeviceInfo.h>
#include <GenApi/INode.h>
#include <GenApi/ISelector.h>

#include "genapi/persistence/access.h"
#include "genapi/persistence/entryline.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;

namespace {

// A combination in which no feature is accessible leaves no entry, so combinations need a bound of
// their own.
constexpr size_t kMaxCombinations = kMaxEntries;

// Selectors are stored together with the features that they select.
bool IsStorable(const INode& node) {
    const EInterfaceType type = node.GetPrincipalInterfaceType();
    if (type == intfICommand || type == intfICategory || type == intfIEnumEntry ||
        type == intfIPort)
        return false;
    const auto* const selector = dynamic_cast<const ISelector*>(&node);
    return selector == nullptr || !selector->IsSelector();
}

// Restores the values of the selectors on every way out.
class SelectorGuard {
  public:
    explicit SelectorGuard(CSelectorSet& selectors) : selectors_(selectors) {}
    ~SelectorGuard() {
        if (isRestored_) return;
        try {
            selectors_.Restore();
        } catch (...) {
            // A destructor must not throw, and the exception in flight, if any, says more.
        }
    }
    SelectorGuard(const SelectorGuard&) = delete;
    SelectorGuard& operator=(const SelectorGuard&) = delete;

    void Restore() {
        isRestored_ = true;
        selectors_.Restore();
    }

  private:
    CSelectorSet& selectors_;
    bool isRestored_ = false;
};

gcstring ToText(const GENICAM_NAMESPACE::Version_t& version) {
    const std::string text = std::to_string(version.Major) + "." + std::to_string(version.Minor) +
                             "." + std::to_string(version.SubMinor);
    return text.c_str();
}

}  // namespace

FeatureStore::FeatureStore(EntryList entries, int maxEntries, const gcstring_vector* filter)
    : entries_(entries),
      start_(entries.size()),
      hasLimit_(maxEntries >= 0),
      limit_(hasLimit_ ? static_cast<size_t>(maxEntries) : 0),
      hasFilter_(filter != nullptr) {
    if (filter == nullptr) return;
    for (const gcstring& name : *filter)
        filter_.emplace(name.c_str(), name.length());
}

void FeatureStore::Store(const INodeMap& nodeMap) {
    NodeList_t nodes;
    nodeMap.GetNodes(nodes);
    for (INode* node : nodes) {
        if (IsFull()) return;
        if (!IsWanted(*node)) continue;
        auto* const feature = dynamic_cast<IValue*>(node);
        if (feature != nullptr) StoreFeature(*feature);
    }
}

bool FeatureStore::IsWanted(const INode& node) const {
    if (!node.IsStreamable() || !node.IsFeature() || !IsStorable(node)) return false;
    if (!hasFilter_) return true;
    const gcstring name = node.GetName();
    return filter_.count(std::string(name.c_str(), name.length())) > 0;
}

void FeatureStore::StoreFeature(IValue& feature) {
    CSelectorSet selectors(&feature);
    if (!selectors.IsEmpty()) {
        StoreCombinations(feature, selectors);
    } else if (IsReadableAndWritable(feature)) {
        Append(feature);
    }
}

void FeatureStore::StoreCombinations(IValue& feature, CSelectorSet& selectors) {
    SelectorGuard guard(selectors);
    size_t firstUnstored = 0;
    for (bool more = selectors.SetFirst(); more && !IsFull(); more = selectors.SetNext()) {
        if (++numCombinations_ > kMaxCombinations)
            throw RUNTIME_EXCEPTION("The selectors of feature '%s' have too many combinations",
                                    feature.GetNode()->GetName().c_str());
        firstUnstored = std::min(firstUnstored, selectors.GetFirstChanged());
        if (!IsReadableAndWritable(feature)) continue;
        StoreSelectors(selectors, firstUnstored);
        Append(feature);
        firstUnstored = static_cast<size_t>(-1);
    }
    guard.Restore();
    StoreSelectors(selectors, 0);
}

// A selector that cannot be written gets no entry, because loading that entry would fail.
void FeatureStore::StoreSelectors(CSelectorSet& selectors, size_t first) {
    FeatureList_t list;
    selectors.GetSelectorList(list);
    for (size_t i = first; i < list.size(); ++i) {
        if (!IsReadableAndWritable(*list[i])) continue;
        // Without its line, the entries after it would be loaded under another value of the
        // selector.
        const gcstring name = list[i]->GetNode()->GetName();
        if (!IsLine(name, list[i]->ToString()))
            throw RUNTIME_EXCEPTION("The value of selector '%s' does not fit into a line",
                                    InOneLine(name).c_str());
        Append(*list[i]);
    }
}

void FeatureStore::Append(IValue& feature) {
    if (IsFull()) return;
    const gcstring name = feature.GetNode()->GetName();
    const gcstring value = feature.ToString();
    length_ += name.length() + value.length() + 2;
    if (length_ > kMaxLines) throw RUNTIME_EXCEPTION("The values are too long for a bag");
    entries_.Append(name, value);
}

gcstring DescribeDevice(INodeMap& nodeMap) {
    gcstring text = nodeMap.GetDeviceName();
    auto* const device = dynamic_cast<IDeviceInfo*>(&nodeMap);
    if (device == nullptr) return text;
    GENICAM_NAMESPACE::Version_t version = {0, 0, 0};
    device->GetDeviceVersion(version);
    text += " = " + device->GetVendorName() + "::" + device->GetModelName();
    text += " -- " + device->GetToolTip();
    text += " -- Device version = " + ToText(version);
    text += " -- Product GUID = " + device->GetProductGuid();
    text += " -- Product version GUID = " + device->GetVersionGuid();
    return text;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
