// The values of a feature's selectors.
#ifndef GENAPI_SELECTORSTATE_H
#define GENAPI_SELECTORSTATE_H

#include <cstddef>

#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

// Names and values, the outermost selector first. Reentrant.
class GENAPI_DECL CSelectorState {
  public:
    void Append(const GENICAM_NAMESPACE::gcstring& Name, const GENICAM_NAMESPACE::gcstring& Value);
    void Clear();

    size_t GetSize() const;
    // OutOfRangeException if there is no such selector.
    const GENICAM_NAMESPACE::gcstring& GetName(size_t Index) const;
    const GENICAM_NAMESPACE::gcstring& GetValue(size_t Index) const;

    // "<name>=<value>" of all selectors, separated by tabs.
    GENICAM_NAMESPACE::gcstring ToString() const;

    bool operator==(const CSelectorState& rhs) const;
    bool operator!=(const CSelectorState& rhs) const { return !(*this == rhs); }

  private:
    GENICAM_NAMESPACE::gcstring_vector m_Names;
    GENICAM_NAMESPACE::gcstring_vector m_Values;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_SELECTORSTATE_H
