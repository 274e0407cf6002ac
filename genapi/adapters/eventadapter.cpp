#include <algorithm>
#include <memory>

#include <GenApi/EventAdapter.h>
#include <GenApi/EventPort.h>
#include <GenApi/INode.h>

#include "genapi/adapters/portlist.h"

namespace GENAPI_NAMESPACE {
namespace {

// One port for each node with an EventID, those of port nodes first.
std::vector<CEventPort*> MakeEventPorts(const INodeMap& nodeMap) {
    NodeList_t nodes;
    nodeMap.GetNodes(nodes);
    std::vector<std::unique_ptr<CEventPort>> made;
    for (INode* node : nodes) {
        if (!node->GetEventID().empty()) made.push_back(std::make_unique<CEventPort>(node));
    }
    std::stable_partition(made.begin(), made.end(),
                          [](const auto& port) { return port->IsPort(); });
    return Engine::ReleasePorts(made);
}

}  // namespace

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
    *m_ppEventPorts = MakeEventPorts(*pNodeMap);
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
