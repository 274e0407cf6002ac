// Connects a port node to a device.
#ifndef GENAPI_IPORTCONSTRUCT_H
#define GENAPI_IPORTCONSTRUCT_H

#include <GenApi/IPort.h>

namespace GENAPI_NAMESPACE {

// Port nodes have this interface. If a consumer's port has it, too, SetPortImpl gives the port its
// node on connection, so that it can invalidate the node.
struct GENAPI_DECL_ABSTRACT IPortConstruct : virtual public IPort {
    virtual void SetPortImpl(IPort* pPort) = 0;
    // For information: the port itself swaps the bytes.
    virtual EYesNo GetSwapEndianess() = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IPORTCONSTRUCT_H
