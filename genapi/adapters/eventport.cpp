#include <cstring>

#include <Base/GCException.h>
#include <GenApi/EventPort.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Synch.h>

#include "genapi/adapters/hexid.h"
#include "genapi/ports/byterange.h"

namespace GENAPI_NAMESPACE {

CEventPort::CEventPort(INode* pNode)
    : m_pNode(pNode),
      m_pPortNode(dynamic_cast<IPortConstruct*>(pNode)),
      m_HasID(false),
      m_IsConnected(false),
      m_HasEvent(false) {
    const GENICAM_NAMESPACE::gcstring text = pNode->GetEventID();
    if (text.length() % 2 != 0) {
        throw LOGICAL_ERROR_EXCEPTION(
            "EventID is a hex string and must not be composed of an uneven number of characters");
    }
    m_HasID = Engine::ParseHexId(text, m_EventID);
}

CEventPort::~CEventPort() {
    try {
        Disconnect();
    } catch (...) {
        // A destructor must not throw; the node is disconnected in any case.
    }
}

void CEventPort::Connect() {
    if (!IsPort()) return;
    m_IsConnected = true;
    m_pPortNode->SetPortImpl(this);
}

void CEventPort::Disconnect() {
    if (!m_IsConnected) return;
    m_IsConnected = false;
    m_pPortNode->SetPortImpl(nullptr);
}

bool CEventPort::IsPort() const {
    return m_pPortNode != nullptr;
}

bool CEventPort::CheckEventID(const std::string& EventID) const {
    return m_HasID && m_EventID == EventID;
}

void CEventPort::AttachEvent(const uint8_t* pData, uint32_t Length) {
    if (IsPort()) {
        const AutoLock lock(m_pNode->GetNodeMap()->GetLock());
        m_Data.assign(pData, pData + Length);
        m_HasEvent = true;
    }
    // Without the lock, so that callbacks outside the lock run outside it. They may destroy this
    // object.
    m_pNode->InvalidateNode();
}

EAccessMode CEventPort::GetAccessMode() const {
    return m_HasEvent ? RO : NA;
}

void CEventPort::Read(void* pBuffer, int64_t Address, int64_t Length) {
    if (!m_HasEvent) throw ACCESS_EXCEPTION("CEventPort : No event was delivered");
    if (Engine::ReadPortSize(pBuffer, Address, Length, static_cast<int64_t>(m_Data.size()))) return;
    Engine::CheckByteRange("CEventPort", Address, Length, 0, static_cast<int64_t>(m_Data.size()));
    if (Length > 0) std::memcpy(pBuffer, m_Data.data() + Address, static_cast<size_t>(Length));
}

void CEventPort::Write(const void*, int64_t, int64_t) {
    throw ACCESS_EXCEPTION("CEventPort : The data of an event cannot be written");
}

}  // namespace GENAPI_NAMESPACE
