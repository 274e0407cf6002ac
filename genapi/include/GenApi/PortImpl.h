// Base class of consumers' ports.
#ifndef GENAPI_PORTIMPL_H
#define GENAPI_PORTIMPL_H

#include <GenApi/GenApiDll.h>
#include <GenApi/IPort.h>
#include <GenApi/IPortConstruct.h>

namespace GENAPI_NAMESPACE {

// A port that knows its node, so that it can report changes of its access mode or its contents.
// Derive from it, implement GetAccessMode, Read and Write, and connect the object with
// INodeMap::Connect; the node then calls SetPortImpl.
//
// Do not call InvalidateNode after the node map has ended, or call SetPortImpl(NULL) first.
// Thread-bound, except for InvalidateNode.
class GENAPI_DECL CPortImpl : public IPortConstruct {
  public:
    CPortImpl();
    ~CPortImpl() override;
    CPortImpl(const CPortImpl&) = delete;
    CPortImpl& operator=(const CPortImpl&) = delete;

    EAccessMode GetAccessMode() const override = 0;
    void Read(void* pBuffer, int64_t Address, int64_t Length) override = 0;
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override = 0;

    // The port node calls this on connection.
    void SetPortImpl(IPort* pPort) override;
    // The value in the node's description; No without a node.
    EYesNo GetSwapEndianess() override;

    // Drops the caches of the node and of all nodes that depend on it, and fires their callbacks.
    // Does nothing while the port is not connected.
    void InvalidateNode();

  protected:
    // For ports over memory: RuntimeException unless [Address, Address + Length] lies within
    // [Begin, End]. Its text begins with the name of the port.
    static void CheckRange(const char* PortName, int64_t Address, int64_t Length, int64_t Begin,
                           int64_t End);

  private:
    IPort* m_pPortNode;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_PORTIMPL_H
