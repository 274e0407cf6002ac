#include "genapi/adapters/eventmessages.h"

#include <cstddef>

#include <Base/GCException.h>
#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterU3V.h>

#include "genapi/adapters/bytes.h"

namespace GENAPI_NAMESPACE {
namespace Engine {
namespace {

constexpr std::uint32_t kHeaderSize = sizeof(GVCP_REQUEST_HEADER);
constexpr std::uint32_t kMinDataSize = 4;
constexpr std::uint8_t kExtendedIds = 0x10;

std::uint32_t itemSize(bool extendedIds) {
    return extendedIds ? sizeof(GVCP_EVENT_ITEM_EXTENDED_ID) : sizeof(GVCP_EVENT_ITEM);
}

[[noreturn]] void throwTooSmall() {
    throw RUNTIME_EXCEPTION("Malformed message - too small");
}

EventItem itemAt(const std::uint8_t* item, std::uint32_t size) {
    return {big16(item + offsetof(GVCP_EVENT_ITEM, EventId)), item, size, big16(item) != 0};
}

[[noreturn]] void throwUnknownTag(std::uint16_t tag) {
    // With its two bytes exchanged: the text that users know.
    const unsigned exchanged = (tag & 0xFFu) << 8 | static_cast<unsigned>(tag) >> 8;
    throw RUNTIME_EXCEPTION("Malformed message - unknown tag %x", exchanged);
}

}  // namespace

std::vector<EventItem> parseGevEvents(const std::uint8_t* items, std::uint32_t length,
                                      bool extendedIds) {
    const std::uint32_t fixedSize = itemSize(extendedIds);
    if (length < fixedSize) throwTooSmall();
    std::vector<EventItem> found;
    // Less than one item at the end is padding.
    while (length >= fixedSize) {
        const std::uint32_t stated = big16(items);
        const std::uint32_t size = stated != 0 ? stated : fixedSize;
        if (size < fixedSize || size > length) throwTooSmall();
        found.push_back(itemAt(items, size));
        items += size;
        length -= size;
    }
    return found;
}

EventItem parseGevEventData(const std::uint8_t* item, std::uint32_t length, bool extendedIds) {
    if (length < itemSize(extendedIds) + kMinDataSize) throwTooSmall();
    return itemAt(item, length);
}

std::vector<EventItem> parseGevMessage(const std::uint8_t* message, std::uint32_t numBytes) {
    if (message == nullptr || numBytes < kHeaderSize) throwTooSmall();
    const unsigned magic = message[offsetof(GVCP_REQUEST_HEADER, Magic)];
    if (magic != COMMAND_MAGIC) {
        throw RUNTIME_EXCEPTION("Malformed message - wrong magic %x (%x expected)", magic,
                                static_cast<unsigned>(COMMAND_MAGIC));
    }
    const std::uint16_t tag = big16(message + offsetof(GVCP_REQUEST_HEADER, Command));
    if (tag != TAG_EVENT_CMD && tag != TAG_EVENTDATA_CMD) throwUnknownTag(tag);
    const std::uint32_t length = big16(message + offsetof(GVCP_REQUEST_HEADER, Length));
    if (length > numBytes - kHeaderSize) throwTooSmall();

    const bool extendedIds = (message[offsetof(GVCP_REQUEST_HEADER, Flags)] & kExtendedIds) != 0;
    const std::uint8_t* body = message + kHeaderSize;
    if (tag == TAG_EVENT_CMD) return parseGevEvents(body, length, extendedIds);
    return {parseGevEventData(body, length, extendedIds)};
}

EventItem parseU3vEvent(const std::uint8_t* event, std::uint32_t length) {
    if (length < sizeof(U3V_EVENT_DATA)) throwTooSmall();
    return {little16(event + offsetof(U3V_EVENT_DATA, EventId)), event, length, true};
}

EventItem parseU3vMessage(const std::uint8_t* message, std::uint32_t numBytes) {
    if (message == nullptr || numBytes < GENCP_EVENT_BASIC_SIZE) throwTooSmall();
    const std::uint32_t prefix = little32(message + offsetof(U3V_COMMAND_HEADER, Prefix));
    if (prefix != U3V_EVENT_PREFIX) {
        throw RUNTIME_EXCEPTION("Malformed message - wrong prefix %x (%x expected)", prefix,
                                U3V_EVENT_PREFIX);
    }
    const unsigned command = little16(message + offsetof(U3V_COMMAND_HEADER, CommandId));
    if (command != GENCP_EVENT_CMD_ID) {
        throw RUNTIME_EXCEPTION("Malformed message - wrong command ID %x (%x expected)", command,
                                static_cast<unsigned>(GENCP_EVENT_CMD_ID));
    }
    const std::uint32_t length = little16(message + offsetof(U3V_COMMAND_HEADER, Length));
    if (length > numBytes - GENCP_COMMAND_HEADER_SIZE) {
        throw RUNTIME_EXCEPTION("Malformed message - reported length larger than message size");
    }
    return parseU3vEvent(message + GENCP_COMMAND_HEADER_SIZE, length);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
