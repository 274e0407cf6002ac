// A group of features.
#ifndef GENAPI_ICATEGORY_H
#define GENAPI_ICATEGORY_H

#include <GenApi/Container.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// The value of a category is its name. Thread-safe.
struct GENAPI_DECL_ABSTRACT ICategory : virtual public IValue {
    // Replaces the list by the features directly below the category, implemented or not.
    virtual void GetFeatures(FeatureList_t& Features) const = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ICATEGORY_H
