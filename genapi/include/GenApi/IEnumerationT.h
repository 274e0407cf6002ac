// An enumeration whose values belong to a C++ enumeration.
#ifndef GENAPI_IENUMERATIONT_H
#define GENAPI_IENUMERATIONT_H

#include <GenApi/IEnumeration.h>

namespace GENAPI_NAMESPACE {

// Classes generated for one camera implement it; node maps have IEnumeration only.
template <typename EnumT>
struct IEnumerationT : virtual public IEnumeration {
    using IEnumeration::GetEntry;

    virtual void SetValue(EnumT Value, bool Verify = true) = 0;
    virtual IEnumeration& operator=(EnumT Value) = 0;
    virtual EnumT GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual EnumT operator()() = 0;
    IEnumeration& operator=(const GENICAM_NAMESPACE::gcstring& ValueStr) override = 0;
    virtual IEnumEntry* GetEntry(const EnumT Value) = 0;
    IEnumEntry* GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) override = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IENUMERATIONT_H
