// A truth value.
#ifndef GENAPI_IBOOLEAN_H
#define GENAPI_IBOOLEAN_H

#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; common errors at IValue. LogicalErrorException when the device holds a number that
// stands for neither value.
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
