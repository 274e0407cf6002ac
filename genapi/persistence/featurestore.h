// Reads the settings of a camera into the entries of a bag.
#pragma once

#include <string>
#include <unordered_set>

#include <GenApi/INodeMap.h>
#include <GenApi/IValue.h>
#include <GenApi/SelectorSet.h>

#include "genapi/persistence/entrylist.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// The entries of one store: see CFeatureBag::StoreToBag. The caller holds the lock of the map.
class FeatureStore {
  public:
    // A negative maxEntries means no limit, a null filter no filter.
    FeatureStore(EntryList entries, int maxEntries,
                 const GENICAM_NAMESPACE::gcstring_vector* filter);

    void Store(const INodeMap& nodeMap);
    size_t Count() const { return entries_.size() - start_; }

  private:
    bool IsWanted(const INode& node) const;
    bool IsFull() const { return hasLimit_ && Count() >= limit_; }
    void StoreFeature(IValue& feature);
    void StoreCombinations(IValue& feature, CSelectorSet& selectors);
    void StoreSelectors(CSelectorSet& selectors, size_t first);
    void Append(IValue& feature);

    EntryList entries_;
    const size_t start_;
    const bool hasLimit_;
    const size_t limit_;
    const bool hasFilter_;
    std::unordered_set<std::string> filter_;
    size_t numCombinations_ = 0;
    size_t length_ = 0;
};

// The line with which StoreToBag describes a camera.
GENICAM_NAMESPACE::gcstring DescribeDevice(INodeMap& nodeMap);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
