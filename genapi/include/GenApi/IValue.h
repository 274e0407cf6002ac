// A node with a value.
#ifndef GENAPI_IVALUE_H
#define GENAPI_IVALUE_H

#include <Base/GCString.h>
#include <GenApi/IBase.h>
#include <GenApi/INode.h>

namespace GENAPI_NAMESPACE {

// Access to a value as text. All operations are thread-safe.
//
// The following also holds for the typed interfaces. AccessException if the access mode forbids the
// call, OutOfRangeException for a value outside the limits, InvalidArgumentException for text that
// does not convert; exceptions of the port pass through.
//  - Verify on a write checks access, limits and the node's error nodes; without it, only values
//    that the device cannot take are refused.
//  - Verify on a read checks limits and error nodes in addition to the access mode.
//  - IgnoreCache reads the device even if the cached value is valid.
struct GENAPI_DECL_ABSTRACT IValue : virtual public IBase {
    // The node that the value belongs to.
    virtual INode* GetNode() { return dynamic_cast<INode*>(this); }
    virtual GENICAM_NAMESPACE::gcstring ToString(bool Verify = false, bool IgnoreCache = false) = 0;
    virtual void FromString(const GENICAM_NAMESPACE::gcstring& ValueStr, bool Verify = true) = 0;
    // Whether the next read uses the cached value.
    virtual bool IsValueCacheValid() const = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IVALUE_H
