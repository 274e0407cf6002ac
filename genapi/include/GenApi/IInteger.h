// An integer.
#ifndef GENAPI_IINTEGER_H
#define GENAPI_IINTEGER_H

#include <Base/GCString.h>
#include <GenApi/Autovector.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors. Limits, increment, representation and unit need an
// available node (AccessException).
struct GENAPI_DECL_ABSTRACT IInteger : virtual public IValue {
    virtual void SetValue(int64_t Value, bool Verify = true) = 0;
    virtual IInteger& operator=(int64_t Value) = 0;
    virtual int64_t GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual int64_t operator()() = 0;
    virtual int64_t operator*() = 0;
    virtual int64_t GetMin() = 0;
    virtual int64_t GetMax() = 0;
    virtual EIncMode GetIncMode() = 0;
    virtual int64_t GetInc() = 0;
    // The values of a node with listIncrement, empty for others; bounded leaves out values beyond
    // the limits.
    virtual int64_autovector_t GetListOfValidValues(bool bounded = true) = 0;
    virtual ERepresentation GetRepresentation() = 0;
    virtual GENICAM_NAMESPACE::gcstring GetUnit() = 0;
    // Narrow the limits; a value beyond the node's own limit has no effect.
    virtual void ImposeMin(int64_t Value) = 0;
    virtual void ImposeMax(int64_t Value) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IINTEGER_H
