// Base class of consumers' ports that accept several writes at once.
#ifndef GENAPI_PORTSTACKEDIMPL_H
#define GENAPI_PORTSTACKEDIMPL_H

#include <cstddef>

#include <GenApi/IPortStacked.h>
#include <GenApi/PortImpl.h>

namespace GENAPI_NAMESPACE {

// CPortImpl with the list form of Write, which writes one entry after another. Override it for a
// device with a faster way. Thread-bound.
class GENAPI_DECL CPortStackedImpl : public CPortImpl, public IPortStacked {
  public:
    CPortStackedImpl();
    ~CPortStackedImpl() override;

    EAccessMode GetAccessMode() const override = 0;
    void Read(void* pBuffer, int64_t Address, int64_t Length) override = 0;
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override = 0;
    // Stops at the first write that fails; earlier writes stay done.
    void Write(PORT_REGISTER_STACK_ENTRY* pEntries, size_t numEntries) override;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_PORTSTACKEDIMPL_H
