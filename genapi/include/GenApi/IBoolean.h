// A boolean.
#ifndef GENAPI_IBOOLEAN_H
#define GENAPI_IBOOLEAN_H

#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors. LogicalErrorException if the device holds a number
// that means neither true nor false.
struct GENAPI_DECL_ABSTRACT IBoolean : virtual public IValue {
    virtual void SetValue(bool Value, bool Verify = true) = 0;
    virtual IBoolean& operator=(bool Value) {
        SetValue(Value);
        return *this;
    }
    virtual bool GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;
    virtual bool operator()() const { return GetValue(); }
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IBOOLEAN_H
