#include <cstring>

#include <Base/GCException.h>
#include <GenApi/ChunkPort.h>

#include "genapi/adapters/hexid.h"
#include "genapi/ports/byterange.h"

namespace GENAPI_NAMESPACE {
namespace {

// Whether the id is the value of another node, which may change or may not be readable yet.
bool HasVariableId(INode* node) {
    GENICAM_NAMESPACE::gcstring value, attribute;
    return node->GetProperty("pChunkID", value, attribute);
}

}  // namespace

CChunkPort::CChunkPort(INode* pNode)
    : m_pNode(pNode),
      m_pPortNode(dynamic_cast<IPortConstruct*>(pNode)),
      m_pChunkNode(dynamic_cast<IChunkPort*>(pNode)),
      m_HasFixedID(!HasVariableId(pNode)),
      m_HasID(false),
      m_IsConnected(false),
      m_IsInBuffer(false),
      m_HasChunk(false),
      m_IsCopied(false),
      m_pChunk(nullptr),
      m_Offset(0),
      m_Length(0) {
    if (m_HasFixedID) m_HasID = Engine::ParseHexId(m_pChunkNode->GetChunkID(), m_ChunkID);
}

CChunkPort::~CChunkPort() {
    try {
        Disconnect();
    } catch (...) {
        // A destructor must not throw; the node is disconnected in any case.
    }
}

bool CChunkPort::HasChunkID(INode* pNode) {
    const IChunkPort* pChunkNode = dynamic_cast<IChunkPort*>(pNode);
    if (pChunkNode == nullptr || dynamic_cast<IPortConstruct*>(pNode) == nullptr) return false;
    return HasVariableId(pNode) || !pChunkNode->GetChunkID().empty();
}

void CChunkPort::Connect() {
    m_IsConnected = true;
    m_pPortNode->SetPortImpl(this);
}

void CChunkPort::Disconnect() {
    if (!m_IsConnected) return;
    m_IsConnected = false;
    m_pPortNode->SetPortImpl(nullptr);
}

void CChunkPort::UpdateChunkID() {
    if (m_HasFixedID) return;
    try {
        m_HasID = Engine::ParseHexId(m_pChunkNode->GetChunkID(), m_ChunkID);
    } catch (const GENICAM_NAMESPACE::GenericException&) {
        m_HasID = false;
    }
}

bool CChunkPort::CheckChunkID(const std::string& ChunkID) const {
    return m_HasID && m_ChunkID == ChunkID;
}

INode* CChunkPort::GetNode() const {
    return m_pNode;
}

void CChunkPort::AttachChunk(const uint8_t* pBuffer, int64_t Offset, int64_t Length,
                             int64_t MaxCacheSize) {
    m_Offset = Offset;
    m_Length = Length;
    m_IsCopied =
        m_pChunkNode->CacheChunkData() == Yes && (MaxCacheSize < 0 || Length <= MaxCacheSize);
    m_HasChunk = m_IsInBuffer = true;
    UpdateBuffer(pBuffer);
}

bool CChunkPort::UpdateBuffer(const uint8_t* pBuffer) {
    if (!m_IsInBuffer) return false;
    m_pChunk = pBuffer + m_Offset;
    if (m_IsCopied) {
        m_Copy.assign(m_pChunk, m_pChunk + m_Length);
        m_pChunk = m_Copy.data();
    }
    return true;
}

bool CChunkPort::DetachBuffer() {
    if (!m_IsInBuffer) return false;
    m_IsInBuffer = false;
    return !m_IsCopied && Clear();
}

bool CChunkPort::ClearCache() {
    return !m_IsInBuffer && Clear();
}

bool CChunkPort::DetachChunk() {
    m_IsInBuffer = false;
    return Clear();
}

bool CChunkPort::Clear() {
    const bool hadChunk = m_HasChunk;
    m_HasChunk = false;
    return hadChunk;
}

EAccessMode CChunkPort::GetAccessMode() const {
    return m_HasChunk ? RO : NA;
}

void CChunkPort::Read(void* pBuffer, int64_t Address, int64_t Length) {
    if (!m_HasChunk) throw ACCESS_EXCEPTION("CChunkPort : No chunk is attached");
    if (Engine::ReadPortSize(pBuffer, Address, Length, m_Length)) return;
    Engine::CheckByteRange("CChunkPort", Address, Length, 0, m_Length);
    if (Length > 0) std::memcpy(pBuffer, m_pChunk + Address, static_cast<size_t>(Length));
}

void CChunkPort::Write(const void*, int64_t, int64_t) {
    throw ACCESS_EXCEPTION("CChunkPort : The data of a chunk cannot be written");
}

}  // namespace GENAPI_NAMESPACE
