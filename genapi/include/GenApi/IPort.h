// A register space.
#ifndef GENAPI_IPORT_H
#define GENAPI_IPORT_H

#include <GenApi/IBase.h>

namespace GENAPI_NAMESPACE {

// Implemented by a consumer over its device, and by port nodes. The map calls a consumer's port
// with the map's lock held, one call at a time. A port throws to report a failure; the exception
// reaches the caller of the node unchanged.
struct GENAPI_DECL_ABSTRACT IPort : virtual public IBase {
    virtual void Read(void* pBuffer, int64_t Address, int64_t Length) = 0;
    virtual void Write(const void* pBuffer, int64_t Address, int64_t Length) = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IPORT_H
