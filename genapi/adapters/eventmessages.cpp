#include "genapi/adapters/eventmessages.h"

#include <cstddef>

#include <Base/GCException.h>
#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterU3V.h>

#include "genapi/adapters/bytes.h"

namespace GENAPI_NAMESPACE {
namespace Engine {
namespace {

constexpr uint32_t kHeaderSize = sizeof(GVCP_REQUEST_HEADER);
constexpr uint32_t kMinDataSize = 4;
constexpr uint8_t kExtendedIds = 0x10;

uint32_t ItemSize(bool extendedIds) {
    return extendedIds ? sizeof(GVCP_EVENT_ITEM_EXTENDED_ID) : sizeof(GVCP_EVENT_ITEM);
}

[[noreturn]] void ThrowTooSmall() {
    throw RUNTIME_EXCEPTION("Malformed message - too small");
}

EventItem ItemAt(const uint8_t* item, uint32_t size) {
    return {Big16(item + offsetof(GVCP_EVENT_ITEM, EventId)), item, size, Big16(item) != 0};
}

[[noreturn]] void ThrowUnknownTag(uint16_t tag) {
    // Users know the tag with its two bytes exchanged.
    const unsigned exchanged = (tag & 0xFFu) << 8 | static_cast<unsigned>(tag) >> 8;
    throw RUNTIME_EXCEPTION("Malformed message - unknown tag %x", exchanged);
}

}  // namespace

std::vector<EventItem> ParseGevEvents(const uint8_t* items, uint32_t length, bool extendedIds) {
    const uint32_t fixedSize = ItemSize(extendedIds);
    if (length < fixedSize) ThrowTooSmall();
    std::vector<EventItem> found;
    // A remainder shorter than an item is padding.
    while (length >= fixedSize) {
        const uint32_t stated = Big16(items);
        const uint32_t size = stated != 0 ? stated : fixedSize;
        if (size < fixedSize || size > length) ThrowTooSmall();
        found.push_back(ItemAt(items, size));
        items += size;
        length -= size;
    }
    return found;
}

EventItem ParseGevEventData(const uint8_t* item, uint32_t length, bool extendedIds) {
    if (length < ItemSize(extendedIds) + kMinDataSize) ThrowTooSmall();
    return ItemAt(item, length);
}

std::vector<EventItem> ParseGevMessage(const uint8_t* message, uint32_t numBytes) {
    if (message == nullptr || numBytes < kHeaderSize) ThrowTooSmall();
    const unsigned magic = message[offsetof(GVCP_REQUEST_HEADER, Magic)];
    if (magic != COMMAND_MAGIC) {
        throw RUNTIME_EXCEPTION("Malformed message - wrong magic %x (%x expected)", magic,
                                static_cast<unsigned>(COMMAND_MAGIC));
    }
    const uint16_t tag = Big16(message + offsetof(GVCP_REQUEST_HEADER, Command));
    if (tag != TAG_EVENT_CMD && tag != TAG_EVENTDATA_CMD) ThrowUnknownTag(tag);
    const uint32_t length = Big16(message + offsetof(GVCP_REQUEST_HEADER, Length));
    if (length > numBytes - kHeaderSize) ThrowTooSmall();

    const bool extendedIds = (message[offsetof(GVCP_REQUEST_HEADER, Flags)] & kExtendedIds) != 0;
    const uint8_t* body = message + kHeaderSize;
    if (tag == TAG_EVENT_CMD) return ParseGevEvents(body, length, extendedIds);
    return {ParseGevEventData(body, length, extendedIds)};
}

EventItem ParseU3vEvent(const uint8_t* event, uint32_t length) {
    if (length < sizeof(U3V_EVENT_DATA)) ThrowTooSmall();
    return {Little16(event + offsetof(U3V_EVENT_DATA, EventId)), event, length, true};
}

EventItem ParseU3vMessage(const uint8_t* message, uint32_t numBytes) {
    if (message == nullptr || numBytes < GENCP_EVENT_BASIC_SIZE) ThrowTooSmall();
    const uint32_t prefix = Little32(message + offsetof(U3V_COMMAND_HEADER, Prefix));
    if (prefix != U3V_EVENT_PREFIX) {
        throw RUNTIME_EXCEPTION("Malformed message - wrong prefix %x (%x expected)", prefix,
                                U3V_EVENT_PREFIX);
    }
    const unsigned command = Little16(message + offsetof(U3V_COMMAND_HEADER, CommandId));
    if (command != GENCP_EVENT_CMD_ID) {
        throw RUNTIME_EXCEPTION("Malformed message - wrong command ID %x (%x expected)", command,
                                static_cast<unsigned>(GENCP_EVENT_CMD_ID));
    }
    const uint32_t length = Little16(message + offsetof(U3V_COMMAND_HEADER, Length));
    if (length > numBytes - GENCP_COMMAND_HEADER_SIZE) {
        throw RUNTIME_EXCEPTION("Malformed message - reported length larger than message size");
    }
    return ParseU3vEvent(message + GENCP_COMMAND_HEADER_SIZE, length);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
