// A register space.
#ifndef GENAPI_IPORT_H
#define GENAPI_IPORT_H

#include <GenApi/IBase.h>

namespace GENAPI_NAMESPACE {

// What a consumer implements over its device, and what a port node offers. The map calls a
// consumer's port with its lock held, one call at a time. A port reports failure by throwing; the
// exception reaches the caller of the node unchanged.
struct GENAPI_DECL_ABSTRACT IPort : virtual public IBase {
    virtual void Read(void* pBuffer, int64_t Address, int64_t Length) = 0;
    virtual void Write(const void* pBuffer, int64_t Address, int64_t Length) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IPORT_H
