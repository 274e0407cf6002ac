// Writes the entries of a bag to a camera.
#pragma once

#include <chrono>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <Base/GCStringVector.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IValue.h>

#include "genapi/persistence/command.h"
#include "genapi/persistence/entrylist.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// One load: see CFeatureBag::LoadFromBag. The caller holds the lock of the map.
//
// Which values a feature accepts depends on other features: Width on OffsetX, a gain on its
// automatic function. Entries that fail are therefore written again after the others, as long as
// that helps. Finally all entries are compared, and those that a later entry has changed are
// written once more.
class FeatureLoad {
  public:
    FeatureLoad(const INodeMap& nodeMap, EntryList entries, bool verify,
                std::chrono::milliseconds patience = kPersistencePatience);

    // Whether nothing failed.
    bool Run();
    // One message for each failure, in the order of the entries.
    GENICAM_NAMESPACE::gcstring_vector Errors() const;

  private:
    struct Item {
        IValue* feature;  // null if the camera has no such feature to write
        bool isSelector;
    };
    // One for each entry.
    using Marks = std::vector<bool>;

    void Write(Marks marked);
    void WriteOnce(const Marks& marked);
    Marks Compare();
    Marks Failed() const;

    // Runs the operation on the marked entries, with the selectors set by the entries before them.
    template <typename Operation>
    void Walk(const Marks& marked, const char* what, Operation operation);
    void PutSelectors();
    template <typename Operation>
    bool Attempt(const char* what, size_t entry, Operation operation);
    bool HasMisplacedSelector(IValue* feature);

    void Notify(const char* command);

    const INodeMap& nodeMap_;
    EntryList entries_;
    const bool verify_;
    const std::chrono::milliseconds patience_;
    std::vector<Item> items_;
    std::map<size_t, GENICAM_NAMESPACE::gcstring> failures_;  // by entry
    GENICAM_NAMESPACE::gcstring_vector commandFailures_;
    int numPasses_ = 0;
    std::unordered_map<IValue*, FeatureList_t> selectors_;  // of the features visited so far

    // The state of the current walk.
    std::map<IValue*, size_t> pending_;      // selectors to set, with the last entry of each
    std::unordered_set<IValue*> misplaced_;  // selectors that did not take their value
    std::unordered_set<IValue*> rewritten_;  // later entries for these must be written, too
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
