// Base class for ports of consumers that take several writes at once.
#ifndef GENAPI_PORTSTACKEDIMPL_H
#define GENAPI_PORTSTACKEDIMPL_H

#include <cstddef>

#include <GenApi/IPortStacked.h>
#include <GenApi/PortImpl.h>

namespace GENAPI_NAMESPACE {

// CPortImpl with the list form of Write. As it stands the list goes out one write after another;
// override it for a device that can do better. Thread-bound.
class GENAPI_DECL CPortStackedImpl : public CPortImpl, public IPortStacked {
  public:
    CPortStackedImpl();
    ~CPortStackedImpl() override;

    EAccessMode GetAccessMode() const override = 0;
    void Read(void* pBuffer, int64_t Address, int64_t Length) override = 0;
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override = 0;
    // The first write that fails ends the list; those before it are done.
    void Write(PORT_REGISTER_STACK_ENTRY* pEntries, size_t numEntries) override;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_PORTSTACKEDIMPL_H
