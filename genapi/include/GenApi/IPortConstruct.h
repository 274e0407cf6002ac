// How a port node gets the port it stands for.
#ifndef GENAPI_IPORTCONSTRUCT_H
#define GENAPI_IPORTCONSTRUCT_H

#include <GenApi/IPort.h>

namespace GENAPI_NAMESPACE {

// Offered by port nodes. A consumer's port that offers it too is told its port node when it is
// connected, so that it can invalidate the node.
struct GENAPI_DECL_ABSTRACT IPortConstruct : virtual public IPort {
    virtual void SetPortImpl(IPort* pPort) = 0;
    // Reported only; the bytes are the port's business.
    virtual EYesNo GetSwapEndianess() = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_IPORTCONSTRUCT_H
