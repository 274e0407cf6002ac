// The selectors of a feature, and the features that it selects.
#ifndef GENAPI_ISELECTOR_H
#define GENAPI_ISELECTOR_H

#include <GenApi/Container.h>
#include <GenApi/IBase.h>

namespace GENAPI_NAMESPACE {

// Every node has this interface. Both operations replace the list, by direct neighbours only.
// Thread-safe.
struct GENAPI_DECL_ABSTRACT ISelector : virtual public IBase {
    virtual bool IsSelector() const = 0;
    virtual void GetSelectedFeatures(FeatureList_t& SelectedFeatures) const = 0;
    virtual void GetSelectingFeatures(FeatureList_t& SelectingFeatures) const = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ISELECTOR_H
