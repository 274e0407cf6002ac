// A choice of named values.
#ifndef GENAPI_IENUMERATION_H
#define GENAPI_IENUMERATION_H

#include <Base/GCString.h>
#include <GenApi/Container.h>
#include <GenApi/IEnumEntry.h>
#include <GenApi/IValue.h>

namespace GENAPI_NAMESPACE {

// Thread-safe; IValue lists the common errors. A value without an entry is refused even without
// Verify (InvalidArgumentException).
struct GENAPI_DECL_ABSTRACT IEnumeration : virtual public IValue {
    // Replaces the list by the symbolics of the available entries.
    virtual void GetSymbolics(StringList_t& Symbolics) = 0;
    // Replaces the list by all entries, available or not, in the order of the description.
    virtual void GetEntries(NodeList_t& Entries) = 0;
    virtual IEnumeration& operator=(const GENICAM_NAMESPACE::gcstring& ValueStr) = 0;
    virtual void SetIntValue(int64_t Value, bool Verify = true) = 0;
    // The symbolic of the current entry.
    virtual GENICAM_NAMESPACE::gcstring operator*() = 0;
    // Without Verify, returns the number even if no entry has it.
    virtual int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) = 0;
    // These find entries of any access mode; null if there is no such entry.
    virtual IEnumEntry* GetEntryByName(const GENICAM_NAMESPACE::gcstring& Symbolic) = 0;
    virtual IEnumEntry* GetEntry(const int64_t IntValue) = 0;
    virtual IEnumEntry* GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IENUMERATION_H
