// Base class for ports of consumers.
#ifndef GENAPI_PORTIMPL_H
#define GENAPI_PORTIMPL_H

#include <GenApi/GenApiDll.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>

namespace GENAPI_NAMESPACE {

// A port that knows the node it stands behind, so that it can say when its access mode or its
// contents changed. Derive from it, implement GetAccessMode, Read and Write, and connect the object
// with INodeMap::Connect; the node then makes itself known through SetPortImpl.
//
// The port must not be used for InvalidateNode after its node map ended; SetPortImpl(NULL) makes
// that call harmless. Thread-bound, except InvalidateNode.
class GENAPI_DECL CPortImpl : public IPortConstruct {
  public:
    CPortImpl();
    ~CPortImpl() override;
    CPortImpl(const CPortImpl&) = delete;
    CPortImpl& operator=(const CPortImpl&) = delete;

    EAccessMode GetAccessMode() const override = 0;
    void Read(void* pBuffer, int64_t Address, int64_t Length) override = 0;
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override = 0;

    // Called by the port node that the port is connected to.
    void SetPortImpl(IPort* pPort) override;
    // What the description says about the node; No while there is none.
    EYesNo GetSwapEndianess() override;

    // Drops what is cached of the node and of all that depend on it, and fires their callbacks.
    // Nothing happens while the port is not connected.
    void InvalidateNode();

  protected:
    // For ports over memory: RuntimeException unless [Address, Address + Length] lies within
    // [Begin, End]; the text begins with the name of the port.
    static void CheckRange(const char* PortName, int64_t Address, int64_t Length, int64_t Begin,
                           int64_t End);

  private:
    IPort* m_pPortNode;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_PORTIMPL_H
