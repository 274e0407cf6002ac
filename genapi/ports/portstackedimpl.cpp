#include <Base/GCException.h>
#include <GenApi/PortStackedImpl.h>

namespace GENAPI_NAMESPACE {

CPortStackedImpl::CPortStackedImpl() = default;

CPortStackedImpl::~CPortStackedImpl() = default;

void CPortStackedImpl::Write(PORT_REGISTER_STACK_ENTRY* pEntries, size_t numEntries) {
    if (pEntries == nullptr && numEntries > 0) {
        throw INVALID_ARGUMENT_EXCEPTION("The list of writes must not be NULL");
    }
    for (size_t i = 0; i < numEntries; ++i) {
        const PORT_REGISTER_STACK_ENTRY& entry = pEntries[i];
        Write(entry.pBuffer, static_cast<int64_t>(entry.Address), static_cast<int64_t>(entry.Size));
    }
}

}  // namespace GENAPI_NAMESPACE
