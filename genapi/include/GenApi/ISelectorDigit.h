// One digit of the counter that runs through the combinations of selector values.
#ifndef GENAPI_ISELECTORDIGIT_H
#define GENAPI_ISELECTORDIGIT_H

#include <Base/GCString.h>
#include <GenApi/Container.h>

namespace GENAPI_NAMESPACE {

class CSelectorState;

// Thread-bound.
struct GENAPI_DECL_ABSTRACT ISelectorDigit {
    // Sets the first value; false if there is none.
    virtual bool SetFirst() = 0;
    // Sets the next value; false after the last.
    virtual bool SetNext(bool Tick = true) = 0;
    // Sets the value that the selector had at the beginning.
    virtual void Restore() = 0;
    virtual GENICAM_NAMESPACE::gcstring ToString() = 0;
    virtual void GetState(CSelectorState& state) = 0;
    virtual void GetSelectorList(FeatureList_t& SelectorList, bool Incremental = false) = 0;
    virtual ~ISelectorDigit() = 0;
};

inline ISelectorDigit::~ISelectorDigit() {}

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ISELECTORDIGIT_H
