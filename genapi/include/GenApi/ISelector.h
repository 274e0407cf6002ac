// Which features a feature selects.
#ifndef GENAPI_ISELECTOR_H
#define GENAPI_ISELECTOR_H

#include <GenApi/Container.h>
#include <GenApi/IBase.h>

namespace GENAPI_NAMESPACE {

// Every node offers this interface. Both lists are replaced and hold direct neighbours only.
// Thread-safe.
struct GENAPI_DECL_ABSTRACT ISelector : virtual public IBase {
    virtual bool IsSelector() const = 0;
    virtual void GetSelectedFeatures(FeatureList_t& SelectedFeatures) const = 0;
    virtual void GetSelectingFeatures(FeatureList_t& SelectingFeatures) const = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ISELECTOR_H
