// Parses the events in messages of cameras. Messages come from a device: nothing outside the given
// bytes is read, and malformed messages throw a RuntimeException.
#pragma once

#include <cstdint>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// One event within a message.
struct EventItem {
    uint16_t id;
    const uint8_t* data;
    uint32_t size;
    // Whether the first field holds the size, not 0; always true for items without such a field.
    bool statesSize;
};

std::vector<EventItem> ParseGevMessage(const uint8_t* message, uint32_t numBytes);
// Parses the items after the header of an EVENT command.
std::vector<EventItem> ParseGevEvents(const uint8_t* items, uint32_t length, bool extendedIds);
// Parses the item and its data after the header of an EVENTDATA command.
EventItem ParseGevEventData(const uint8_t* item, uint32_t length, bool extendedIds);

EventItem ParseU3vMessage(const uint8_t* message, uint32_t numBytes);
// Parses the event after the header.
EventItem ParseU3vEvent(const uint8_t* event, uint32_t length);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
