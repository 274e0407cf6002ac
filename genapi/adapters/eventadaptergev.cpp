#include <vector>

#include <GenApi/EventAdapterGEV.h>

#include "genapi/adapters/bytes.h"
#include "genapi/adapters/eventmessages.h"
#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {
namespace {

const uint8_t* BodyOf(const GVCP_REQUEST_HEADER& header) {
    return reinterpret_cast<const uint8_t*>(&header) + sizeof header;
}

uint32_t LengthOf(const GVCP_REQUEST_HEADER& header) {
    return Engine::Big16(reinterpret_cast<const uint8_t*>(&header) +
                         offsetof(GVCP_REQUEST_HEADER, Length));
}

}  // namespace

CEventAdapterGEV::CEventAdapterGEV(INodeMap* pNodeMap) : CEventAdapter(pNodeMap) {}

CEventAdapterGEV::~CEventAdapterGEV() = default;

void CEventAdapterGEV::DeliverMessage(const uint8_t msg[], uint32_t numBytes) {
    DeliverItems(Engine::ParseGevMessage(msg, numBytes));
}

void CEventAdapterGEV::DeliverEventMessage(const GVCP_EVENT_REQUEST* pEvent) {
    DeliverItems(Engine::ParseGevEvents(BodyOf(pEvent->Header), LengthOf(pEvent->Header), false));
}

void CEventAdapterGEV::DeliverEventMessage(const GVCP_EVENTDATA_REQUEST* pEventData) {
    const GVCP_REQUEST_HEADER& header = pEventData->Header;
    DeliverItem(Engine::ParseGevEventData(BodyOf(header), LengthOf(header), false));
}

void CEventAdapterGEV::DeliverEventMessage(const GVCP_EVENT_REQUEST_EXTENDED_ID* pEvent) {
    DeliverItems(Engine::ParseGevEvents(BodyOf(pEvent->Header), LengthOf(pEvent->Header), true));
}

void CEventAdapterGEV::DeliverEventMessage(const GVCP_EVENTDATA_REQUEST_EXTENDED_ID* pEventData) {
    const GVCP_REQUEST_HEADER& header = pEventData->Header;
    DeliverItem(Engine::ParseGevEventData(BodyOf(header), LengthOf(header), true));
}

void CEventAdapterGEV::DeliverItems(const std::vector<Engine::EventItem>& Items) {
    for (const Engine::EventItem& item : Items) {
        DeliverItem(item);
    }
}

void CEventAdapterGEV::DeliverItem(const Engine::EventItem& Item) {
    const std::string id = Engine::HexId(Item.id);
    if (Item.statesSize) {
        DeliverEvent(id, Item.data, Item.size);
        return;
    }
    std::vector<uint8_t> shown(Item.data, Item.data + Item.size);
    shown[0] = static_cast<uint8_t>(Item.size >> 8);
    shown[1] = static_cast<uint8_t>(Item.size & 0xFF);
    DeliverEvent(id, shown.data(), Item.size);
}

}  // namespace GENAPI_NAMESPACE
