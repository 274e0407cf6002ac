// One value of an enumeration.
#ifndef GENAPI_IENUMENTRY_H
#define GENAPI_IENUMENTRY_H

#include <Base/GCString.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors.
struct GENAPI_DECL_ABSTRACT IEnumEntry : virtual public IValue {
    virtual int64_t GetValue() = 0;
    virtual GENICAM_NAMESPACE::gcstring GetSymbolic() const = 0;
    // The integer value, if the description gives no numeric value.
    virtual double GetNumericValue() = 0;
    // Whether the device replaces this value by another one when it has acted on it.
    virtual bool IsSelfClearing() = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IENUMENTRY_H
