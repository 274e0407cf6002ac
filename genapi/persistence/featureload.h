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

// One load: see CFeatureBag::LoadFromBag. Used with the lock of the map held.
//
// What a feature takes depends on others: Width on OffsetX, a gain on its automatic function. So
// entries that fail are written again behind the others as long as that helps. When all are
// compared in the end, those that a later entry has changed are written once more.
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
        IValue* feature;  // null if the camera has nothing of that name to write
        bool isSelector;
    };
    // One for each entry.
    using Marks = std::vector<bool>;

    void Write(Marks marked);
    void WriteOnce(const Marks& marked);
    Marks Compare();
    Marks Failed() const;

    // Does the operation on the marked entries, with the selectors where the entries before them
    // put them.
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
    std::unordered_map<IValue*, FeatureList_t> selectors_;  // of the features met so far

    // The present walk.
    std::map<IValue*, size_t> pending_;      // selectors to put, with the last entry of each
    std::unordered_set<IValue*> misplaced_;  // selectors that did not take their value
    std::unordered_set<IValue*> rewritten_;  // what follows for the same feature comes after it
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
