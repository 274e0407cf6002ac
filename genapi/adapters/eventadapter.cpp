#include <algorithm>

#include <GenApi/EventAdapter.h>
#include <GenApi/EventPort.h>
#include <GenApi/INode.h>

#include "genapi/adapters/portlist.h"

namespace GENAPI_NAMESPACE {
CEventAdapter::CEventAdapter(CUnattached) : m_ppEventPorts(new std::vector<CEventPort*>) {}

// Delegates, so that the destructor cleans up if AttachNodeMap throws.
CEventAdapter::CEventAdapter(INodeMap* pNodeMap) : CEventAdapter(CUnattached()) {
    CEventAdapter::AttachNodeMap(pNodeMap);
}

CEventAdapter::~CEventAdapter() {
    Engine::DeletePorts(*m_ppEventPorts);
    delete m_ppEventPorts;
}

void CEventAdapter::AttachNodeMap(INodeMap* pNodeMap) {
    DetachNodeMap();
    if (pNodeMap == nullptr) return;
    *m_ppEventPorts = Engine::MakePorts<CEventPort>(
        *pNodeMap, [](const INode* node) { return !node->GetEventID().empty(); });
    std::stable_partition(m_ppEventPorts->begin(), m_ppEventPorts->end(),
                          [](const CEventPort* port) { return port->IsPort(); });
    Engine::ConnectPorts(*m_ppEventPorts);
}

void CEventAdapter::DetachNodeMap() {
    Engine::DeletePorts(*m_ppEventPorts);
}

void CEventAdapter::DeliverEvent(const std::string& EventID, const uint8_t* pData,
                                 uint32_t Length) {
    // By index, because callbacks may detach the map.
    for (size_t i = 0; i < m_ppEventPorts->size(); ++i) {
        CEventPort* pPort = (*m_ppEventPorts)[i];
        if (pPort->CheckEventID(EventID)) pPort->AttachEvent(pData, Length);
    }
}

}  // namespace GENAPI_NAMESPACE
