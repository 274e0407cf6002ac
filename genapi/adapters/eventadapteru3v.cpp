#include <GenApi/EventAdapterU3V.h>

#include "genapi/adapters/bytes.h"
#include "genapi/adapters/eventmessages.h"
#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {

CEventAdapterU3V::CEventAdapterU3V(INodeMap* pNodeMap) : CEventAdapter(pNodeMap) {}

CEventAdapterU3V::~CEventAdapterU3V() = default;

void CEventAdapterU3V::DeliverMessage(const uint8_t msg[], uint32_t numBytes) {
    const Engine::EventItem item = Engine::ParseU3vMessage(msg, numBytes);
    DeliverEvent(Engine::HexId(item.id), item.data, item.size);
}

void CEventAdapterU3V::DeliverEventMessage(const U3V_EVENT_MESSAGE* pEventMessage) {
    const uint8_t* pBytes = reinterpret_cast<const uint8_t*>(pEventMessage);
    const uint32_t length = Engine::Little16(pBytes + offsetof(U3V_COMMAND_HEADER, Length));
    const Engine::EventItem item =
        Engine::ParseU3vEvent(pBytes + GENCP_COMMAND_HEADER_SIZE, length);
    DeliverEvent(Engine::HexId(item.id), item.data, item.size);
}

}  // namespace GENAPI_NAMESPACE
