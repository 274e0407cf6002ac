#include <GenApi/INode.h>
#include <GenApi/PortImpl.h>

#include "genapi/ports/byterange.h"

namespace GENAPI_NAMESPACE {

CPortImpl::CPortImpl() : m_pPortNode(nullptr) {}

CPortImpl::~CPortImpl() = default;

void CPortImpl::SetPortImpl(IPort* pPort) {
    m_pPortNode = pPort;
}

EYesNo CPortImpl::GetSwapEndianess() {
    IPortConstruct* pNode = dynamic_cast<IPortConstruct*>(m_pPortNode);
    return pNode != nullptr ? pNode->GetSwapEndianess() : No;
}

void CPortImpl::InvalidateNode() {
    INode* pNode = dynamic_cast<INode*>(m_pPortNode);
    if (pNode != nullptr) pNode->InvalidateNode();
}

void CPortImpl::CheckRange(const char* PortName, int64_t Address, int64_t Length, int64_t Begin,
                           int64_t End) {
    Engine::CheckByteRange(PortName, Address, Length, Begin, End);
}

}  // namespace GENAPI_NAMESPACE
