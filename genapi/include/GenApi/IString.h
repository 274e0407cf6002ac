// A text.
#ifndef GENAPI_ISTRING_H
#define GENAPI_ISTRING_H

#include <Base/GCString.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors. A text longer than GetMaxLength is refused even
// without Verify (OutOfRangeException).
struct GENAPI_DECL_ABSTRACT IString : virtual public IValue {
    virtual void SetValue(const GENICAM_NAMESPACE::gcstring& Value, bool Verify = true) = 0;
    virtual IString& operator=(const GENICAM_NAMESPACE::gcstring& Value) = 0;
    virtual GENICAM_NAMESPACE::gcstring GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual GENICAM_NAMESPACE::gcstring operator()() = 0;
    virtual GENICAM_NAMESPACE::gcstring operator*() = 0;
    virtual int64_t GetMaxLength(bool Verify = false) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ISTRING_H
