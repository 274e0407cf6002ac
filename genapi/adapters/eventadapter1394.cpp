#include <Base/GCException.h>
#include <GenApi/EventAdapter1394.h>

namespace GENAPI_NAMESPACE {

CEventAdapter1394::CEventAdapter1394(INodeMap* pNodeMap) : CEventAdapter(pNodeMap) {}

CEventAdapter1394::~CEventAdapter1394() = default;

void CEventAdapter1394::DeliverMessage(const uint8_t[], uint32_t) {
    throw RUNTIME_EXCEPTION("Event messages of IEEE 1394 cameras are not supported");
}

}  // namespace GENAPI_NAMESPACE
