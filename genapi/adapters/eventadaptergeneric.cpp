#include <Base/GCException.h>
#include <GenApi/EventAdapterGeneric.h>

#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {

CEventAdapterGeneric::CEventAdapterGeneric(INodeMap* pNodeMap) : CEventAdapter(pNodeMap) {}

CEventAdapterGeneric::~CEventAdapterGeneric() = default;

void CEventAdapterGeneric::DeliverMessage(const uint8_t[], uint32_t) {}

void CEventAdapterGeneric::DeliverMessage(const uint8_t msg[], uint32_t numBytes,
                                          const GENICAM_NAMESPACE::gcstring& EventID) {
    if (EventID.length() % 2 != 0) {
        throw RUNTIME_EXCEPTION("Invalid event ID delivered: %s", EventID.c_str());
    }
    std::string id;
    if (Engine::ParseHexId(EventID, id)) DeliverEvent(id, msg, numBytes);
}

void CEventAdapterGeneric::DeliverMessage(const uint8_t msg[], uint32_t numBytes,
                                          uint64_t EventID) {
    DeliverEvent(Engine::HexId(EventID), msg, numBytes);
}

}  // namespace GENAPI_NAMESPACE
