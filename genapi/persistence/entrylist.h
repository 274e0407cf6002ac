// The entries of a feature bag: names and values in two lists of equal length.
#pragma once

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// More than any camera has, including its tables of values; texts and selectors are untrusted
// input.
constexpr size_t kMaxEntries = size_t(1) << 19;
// The characters that one store may read. With a header they fit in a text of the largest length.
constexpr size_t kMaxLines = (size_t(1) << 25) - (size_t(1) << 16);

// A view of the lists of a bag.
class EntryList {
  public:
    EntryList(GENICAM_NAMESPACE::gcstring_vector& names, GENICAM_NAMESPACE::gcstring_vector& values)
        : names_(names), values_(values) {}

    size_t size() const { return values_.size(); }
    const GENICAM_NAMESPACE::gcstring& Name(size_t index) const { return names_[index]; }
    const GENICAM_NAMESPACE::gcstring& Value(size_t index) const { return values_[index]; }

    // RuntimeException when the list is full.
    void Append(const GENICAM_NAMESPACE::gcstring& name, const GENICAM_NAMESPACE::gcstring& value) {
        if (size() >= kMaxEntries) throw RUNTIME_EXCEPTION("The feature bag is full");
        names_.push_back(name);
        values_.push_back(value);
    }

  private:
    GENICAM_NAMESPACE::gcstring_vector& names_;
    GENICAM_NAMESPACE::gcstring_vector& values_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
