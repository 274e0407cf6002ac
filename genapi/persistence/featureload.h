// Writes the entries of a bag to a camera.
#pragma once

#include <Base/GCStringVector.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IValue.h>

#include "genapi/persistence/entrylist.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// One load: see CFeatureBag::LoadFromBag. Used with the lock of the map held.
class FeatureLoad {
  public:
    // Messages go to the list unless it is null.
    FeatureLoad(const INodeMap& nodeMap, EntryList entries,
                GENICAM_NAMESPACE::gcstring_vector* errors)
        : nodeMap_(nodeMap), entries_(entries), errors_(errors) {}

    void write();
    void verify();
    bool isGood() const { return isGood_; }

  private:
    IValue* find(size_t entry) const;
    void verify(IValue& feature, size_t entry);
    void fail(const GENICAM_NAMESPACE::gcstring& message);
    template <typename Operation>
    void attempt(const char* what, size_t entry, Operation operation);

    const INodeMap& nodeMap_;
    const EntryList entries_;
    GENICAM_NAMESPACE::gcstring_vector* const errors_;
    bool isGood_ = true;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
