#include <Base/GCException.h>
#include <GenApi/IPort.h>
#include <GenApi/PortWriteList.h>

namespace GENAPI_NAMESPACE {

CPortWriteList::CPortWriteList() : m_Cookie(0) {}

CPortWriteList::~CPortWriteList() = default;

void CPortWriteList::Write(const void* pBuffer, int64_t Address, int64_t Length) {
    if (Length < 0 || (pBuffer == nullptr && Length > 0)) {
        throw INVALID_ARGUMENT_EXCEPTION("A write needs a buffer and a length");
    }
    const size_t length = static_cast<size_t>(Length);
    const uint8_t* pBytes = static_cast<const uint8_t*>(pBuffer);
    m_Entries.push_back({Address, m_Bytes.size(), length});
    m_Bytes.insert(m_Bytes.end(), pBytes, pBytes + length);
}

void CPortWriteList::Replay(IPort* pPort) {
    if (pPort == nullptr) throw INVALID_ARGUMENT_EXCEPTION("The port must not be NULL");
    for (const CEntry& entry : m_Entries) {
        pPort->Write(m_Bytes.data() + entry.Offset, entry.Address,
                     static_cast<int64_t>(entry.Length));
    }
}

void CPortWriteList::SetCookie(const int64_t Value) {
    m_Cookie = Value;
}

int64_t CPortWriteList::GetCookie() {
    return m_Cookie;
}

}  // namespace GENAPI_NAMESPACE
