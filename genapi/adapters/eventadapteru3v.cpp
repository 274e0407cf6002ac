#include <GenApi/EventAdapterU3V.h>

#include "genapi/adapters/bytes.h"
#include "genapi/adapters/eventmessages.h"
#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {

CEventAdapterU3V::CEventAdapterU3V(INodeMap* pNodeMap) : CEventAdapter(pNodeMap) {}

CEventAdapterU3V::~CEventAdapterU3V() = default;

void CEventAdapterU3V::DeliverMessage(const uint8_t msg[], uint32_t numBytes) {
    const Engine::EventItem item = Engine::parseU3vMessage(msg, numBytes);
    DeliverEvent(Engine::hexId(item.id), item.data, item.size);
}

void CEventAdapterU3V::DeliverEventMessage(const U3V_EVENT_MESSAGE* pEventMessage) {
    const uint8_t* pBytes = reinterpret_cast<const uint8_t*>(pEventMessage);
    const uint32_t length = Engine::little16(pBytes + offsetof(U3V_COMMAND_HEADER, Length));
    const Engine::EventItem item =
        Engine::parseU3vEvent(pBytes + GENCP_COMMAND_HEADER_SIZE, length);
    DeliverEvent(Engine::hexId(item.id), item.data, item.size);
}

}  // namespace GENAPI_NAMESPACE
