// Events of GigE Vision cameras.
#ifndef GENAPI_EVENTADAPTERGEV_H
#define GENAPI_EVENTADAPTERGEV_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <GenApi/EventAdapter.h>

namespace GENAPI_NAMESPACE {

namespace Engine {
struct EventItem;
}

// The messages on the wire; all fields are big endian.
#pragma pack(push, 1)

static const uint8_t COMMAND_MAGIC = 0x42;

using GVCP_MESSAGE_TAGS = enum _GVCP_MESSAGE_TAGS {
    TAG_EVENT_CMD = 0xc0,
    TAG_EVENTDATA_CMD = 0xc2
};

using GVCP_REQUEST_HEADER = struct _GVCP_REQUEST_HEADER {
    uint8_t Magic;
    uint8_t Flags;
    uint16_t Command;
    uint16_t Length;  // bytes after the header
    uint16_t ReqId;
};

using GVCP_EVENT_ITEM_BASIC = struct _GVCP_EVENT_ITEM_BASIC {
    uint16_t ReservedOrEventSize;
    uint16_t EventId;
};

using GVCP_EVENT_ITEM = struct _GVCP_EVENT_ITEM {
    uint16_t ReservedOrEventSize;
    uint16_t EventId;
    uint16_t StreamChannelId;
    uint16_t BlockId;
    uint32_t TimestampHigh;
    uint32_t TimestampLow;
};

using GVCP_EVENT_ITEM_EXTENDED_ID = struct _GVCP_EVENT_ITEM_EXTENDED_ID {
    uint16_t ReservedOrEventSize;
    uint16_t EventId;
    uint16_t StreamChannelId;
    uint16_t BlockId;  // 0
    uint32_t BlockId64High;
    uint32_t BlockId64Low;
    uint32_t TimestampHigh;
    uint32_t TimestampLow;
};

// The message determines the length of the arrays at the end.
using GVCP_EVENT_REQUEST = struct _GVCP_EVENT_REQUEST {
    GVCP_REQUEST_HEADER Header;
    GVCP_EVENT_ITEM Items[1];
};

using GVCP_EVENT_REQUEST_EXTENDED_ID = struct _GVCP_EVENT_REQUEST_EXTENDED_ID {
    GVCP_REQUEST_HEADER Header;
    GVCP_EVENT_ITEM_EXTENDED_ID Items[1];
};

using GVCP_EVENTDATA_REQUEST = struct _GVCP_EVENTDATA_REQUEST {
    GVCP_REQUEST_HEADER Header;
    GVCP_EVENT_ITEM Event;
    uint32_t Data[1];
};

using GVCP_EVENTDATA_REQUEST_EXTENDED_ID = struct _GVCP_EVENTDATA_REQUEST_EXTENDED_ID {
    GVCP_REQUEST_HEADER Header;
    GVCP_EVENT_ITEM_EXTENDED_ID Event;
    uint32_t Data[1];
};

#pragma pack(pop)

// Accepts EVENT and EVENTDATA commands with or without extended ids. Address 0 of an event's port
// is the first byte of its item, even if the item does not contain its size.
class GENAPI_DECL CEventAdapterGEV : public CEventAdapter {
  public:
    CEventAdapterGEV(INodeMap* pNodeMap = nullptr);
    ~CEventAdapterGEV() override;

    void DeliverMessage(const uint8_t msg[], uint32_t numBytes) override;

    // These trust the Length in the header, and ignore the magic and the tag.
    void DeliverEventMessage(const GVCP_EVENT_REQUEST* pEvent);
    void DeliverEventMessage(const GVCP_EVENTDATA_REQUEST* pEventData);
    void DeliverEventMessage(const GVCP_EVENT_REQUEST_EXTENDED_ID* pEvent);
    void DeliverEventMessage(const GVCP_EVENTDATA_REQUEST_EXTENDED_ID* pEventData);

  private:
    void DeliverItems(const std::vector<Engine::EventItem>& Items);
    void DeliverItem(const Engine::EventItem& Item);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_EVENTADAPTERGEV_H
