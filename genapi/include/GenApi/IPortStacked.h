// A port that accepts several writes at once.
#ifndef GENAPI_IPORTSTACKED_H
#define GENAPI_IPORTSTACKED_H

#include <cstddef>
#include <cstdint>

#include <GenApi/IPort.h>

namespace GENAPI_NAMESPACE {

// One write of a list.
using PORT_REGISTER_STACK_ENTRY = struct S_PORT_REGISTER_STACK_ENTRY {
    uint64_t Address;
    void* pBuffer;
    size_t Size;
};

// A port to a device that can execute a list of writes in one operation.
struct GENAPI_DECL_ABSTRACT IPortStacked : virtual public IPort {
    using IPort::Write;
    virtual void Write(PORT_REGISTER_STACK_ENTRY* pEntries, size_t numEntries) = 0;
};

// IPortConstruct for such ports.
struct GENAPI_DECL_ABSTRACT IPortStackedConstruct {
    virtual void SetPortImpl(IPortStacked* pPort) = 0;
    virtual EYesNo GetSwapEndianess() = 0;

  protected:
    ~IPortStackedConstruct() = default;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IPORTSTACKED_H
