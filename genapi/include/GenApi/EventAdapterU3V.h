// Events of USB3 Vision cameras.
#ifndef GENAPI_EVENTADAPTERU3V_H
#define GENAPI_EVENTADAPTERU3V_H

#include <cstddef>
#include <cstdint>

#include <GenApi/EventAdapter.h>

namespace GENAPI_NAMESPACE {

static const uint32_t U3V_EVENT_PREFIX = 0x45563355;
static const uint16_t GENCP_EVENT_CMD_ID = 0x0C00;
static const uint32_t GENCP_COMMAND_HEADER_SIZE = 12;
static const uint32_t GENCP_EVENT_BASIC_SIZE = 24;

// The messages on the wire; all fields are little endian.
#pragma pack(push, 1)

using U3V_COMMAND_HEADER = struct _U3V_COMMAND_HEADER {
    uint32_t Prefix;
    uint16_t Flags;
    uint16_t CommandId;
    uint16_t Length;  // bytes after the header
    uint16_t ReqId;
};

// The data of the event follows.
using U3V_EVENT_DATA = struct _U3V_EVENT_DATA {
    uint16_t Reserved;
    uint16_t EventId;
    uint64_t Timestamp;
};

using U3V_EVENT_MESSAGE = struct _U3V_EVENT_MESSAGE {
    U3V_COMMAND_HEADER Header;
    U3V_EVENT_DATA Event;
};

#pragma pack(pop)

// Accepts event commands with one event each. Address 0 of the event's port is the first byte after
// the header.
class GENAPI_DECL CEventAdapterU3V : public CEventAdapter {
  public:
    CEventAdapterU3V(INodeMap* pNodeMap = nullptr);
    ~CEventAdapterU3V() override;

    void DeliverMessage(const uint8_t msg[], uint32_t numBytes) override;

    // Trusts the Length in the header, and ignores the prefix and the command.
    void DeliverEventMessage(const U3V_EVENT_MESSAGE* pEventMessage);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTADAPTERU3V_H
